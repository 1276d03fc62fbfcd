// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/capture_monitor.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "support/extraction_bench.h"
#include "support/must_run.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::endCommands;
using test::ExtractionBench;
using test::joined;
using test::linesOf;
using test::QueueBench;
using test::savedAs;
using test::SavedCapture;
using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> tickCommands = {"set capture time format bytes",
                                               "status capture length", "status cd position",
                                               "status cd current track"};

// --- extractions without a stop by the user ------------------------------------------------

TEST(CaptureMonitor, SendsTheSameFourCommandsAtEachTickOfATrackOfOneHour) {
    constexpr std::int32_t hourMs = 3'600'000;
    ExtractionBench bench({hourMs, 1000});
    bench.insertDisc();
    bench.select("Track  1 - 01:00:00");
    const auto start = bench.loop.now();
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.loop.now() - start, 1h);
    std::vector<std::string> expected = {
        "open new type waveaudio alias capture",
        "set capture samplespersec 44100 channels 2 bitspersample 16 alignment 4 bytespersec "
        "176400",
        "open cdaudio alias cd",
        "set cd time format milliseconds",
        "record capture overwrite",
        "play cd"};
    for (int tick = 0; tick < hourMs / 100; ++tick) {
        expected.insert(expected.end(), tickCommands.begin(), tickCommands.end());
    }
    EXPECT_TRUE(bench.media.log == joined(expected, endCommands(savedAs(1))));
    EXPECT_THAT(bench.disc.saved, ElementsAre(SavedCapture{savedAs(1), 3600LL * 176400}));
}

TEST(CaptureMonitor, ShowsTheByteCountThePercentageAndTheBarInEachTick) {
    QueueBench bench(2);
    bench.loop.after(550ms, test::mustRun([&] {
                         EXPECT_EQ(bench.form.lblStatus.caption(), "88200 Bytes");
                         EXPECT_EQ(bench.form.Label33.caption(), "50%");
                         EXPECT_EQ(bench.form.ProgressBar1.value(), 50);
                     }));
    // The displays start again at 0 for the second track, which starts at 1000 ms.
    bench.loop.after(1150ms, test::mustRun([&] {
                         EXPECT_EQ(bench.form.lblStatus.caption(), "17640 Bytes");
                         EXPECT_EQ(bench.form.Label33.caption(), "10%");
                     }));
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.disc.saved.size(), 2U);
}

TEST(CaptureMonitor, CapturesBothTracksOfAQueueOfTwo) {
    QueueBench bench(2);
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.disc.saved,
                ElementsAre(SavedCapture{savedAs(1), 176400}, SavedCapture{savedAs(2), 176400}));
    EXPECT_EQ(bench.form.lstRecord.listCount(), 2);
    EXPECT_EQ(bench.form.lstRecord.listIndex(), 1);
    EXPECT_EQ(bench.state.currentTrack, 2);
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_TRUE(bench.idle());
    // The end of the queue resets the displays, but adds the captured files neither to the tree nor
    // to a list: a later scan of the folder adds them.
    EXPECT_EQ(bench.form.Label3.caption(), "Next action:");
    EXPECT_EQ(bench.form.Label2.caption(), "c:\\wavfiles\\");
    EXPECT_EQ(bench.form.caption(), "Sonarith v2.0");
    EXPECT_EQ(bench.form.lblStatus.caption(), "");
    EXPECT_THAT(linesOf(bench.form.List1), IsEmpty());
    EXPECT_FALSE(bench.treeHolds(savedAs(1)));
}

TEST(CaptureMonitor, EndsAQueueOfOneTrackAfterThatTrack) {
    QueueBench bench(2);
    ASSERT_TRUE(bench.form.lstRecord.removeItem(1).ok());
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.disc.saved.size(), 1U);
    EXPECT_EQ(bench.form.lstRecord.listIndex(), 0);
    EXPECT_TRUE(bench.commandsOpen());
}

TEST(CaptureMonitor, ShowsTheSavedFileBeforeTheNextTrackStarts) {
    QueueBench bench(2);
    std::string label2;
    std::string label3;
    std::string caption;
    // When the first track is saved, the monitor sets, in this order, Label3 to the text
    // "Extracting Track 2", Label2 to the saved file, and the window's caption to the text of
    // Label3. The start of the next track then sets Label3 and the caption to the same text again,
    // and Label2 to "To: ...". The texts are read when the monitor sets Label2, so the caption is
    // still that of the first track.
    bench.form.Command2.setVisible(false);
    const Connection connection = bench.form.Label2.changed.connect([&](Property) {
        if (!bench.form.Label2.caption().starts_with("To: ") && label2.empty() &&
            bench.disc.saved.size() == 1) {
            label2 = bench.form.Label2.caption();
            label3 = bench.form.Label3.caption();
            caption = bench.form.caption();
        }
    });
    bench.form.cmdStart.click();
    EXPECT_EQ(label2, savedAs(1));
    EXPECT_EQ(label3, "Extracting Track 2");
    EXPECT_EQ(caption, "Extracting Track 1");
}

TEST(CaptureMonitor, SetsTheWindowCaptionForTheNextTrackBeforeItShowsTheCancelButton) {
    QueueBench bench(2);
    std::vector<bool> visible;
    bench.loop.after(500ms, [&] { bench.form.Command2.setVisible(false); });
    const Connection connection = bench.form.changed.connect([&](Property) {
        if (bench.form.caption() == "Extracting Track 2") {
            visible.push_back(bench.form.Command2.visible());
        }
    });
    bench.form.cmdStart.click();
    // The start of the next track sets the same caption again, which emits no `changed`.
    EXPECT_THAT(visible, ElementsAre(false));
}

TEST(CaptureMonitor, ShowsTheCancelButtonAgainForTheNextTrack) {
    QueueBench bench(2);
    bench.loop.after(500ms, [&] { bench.form.Command2.setVisible(false); });
    bench.loop.after(1500ms, test::mustRun([&] { EXPECT_TRUE(bench.form.Command2.visible()); }));
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.disc.saved.size(), 2U);
}

TEST(CaptureMonitor, MonitorsTheFreeDiskSpaceOnlyDuringTheFirstTrack) {
    QueueBench bench(2);
    bench.form.tmrWarning.setEnabled(true);
    bench.loop.after(500ms, test::mustRun([&] { EXPECT_TRUE(bench.form.tmrWarning.enabled()); }));
    bench.loop.after(1500ms, test::mustRun([&] { EXPECT_FALSE(bench.form.tmrWarning.enabled()); }));
    bench.form.cmdStart.click();
    EXPECT_FALSE(bench.form.tmrWarning.enabled());
}

TEST(CaptureMonitor, EndsATrackOnTheFirstTickAtOrAfterItsEnd) {
    ExtractionBench bench({950, 1000});
    bench.insertDisc();
    bench.select("Track  1 - 00:00:00");
    bench.form.cmdStart.click();
    // The file contains 50 ms of the following track.
    EXPECT_THAT(bench.disc.saved, ElementsAre(SavedCapture{savedAs(1), 176400}));
    EXPECT_EQ(bench.timesSent("status cd position"), 10);
}

TEST(CaptureMonitor, EndsTheQueueAtATrackThatIsNotOnTheDisc) {
    QueueBench bench(2);
    ASSERT_TRUE(bench.form.lstRecord.setList(1, "Track 99 - 00:00:01").ok());
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.disc.saved.size(), 1U);
    EXPECT_TRUE(bench.idle());
    // The commands were disabled for the first track. In the program, ActionStarter enables them
    // when the action has ended.
    EXPECT_FALSE(bench.commandsOpen());
}

TEST(CaptureMonitor, EndsTheQueueIfTheDeviceFailsForALaterTrack) {
    QueueBench bench(3);
    bench.media.answer("play cd from 1000", {.status = 300});
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.boxes.texts(), ElementsAre("Error playing cd!"));
    EXPECT_EQ(bench.timesSent("open cdaudio alias cd"), 2);
    EXPECT_EQ(bench.form.lstRecord.listIndex(), 2);
    EXPECT_TRUE(bench.idle());
}

// --- positions -----------------------------------------------------------------------------

struct Progress {
    std::string position;
    std::string shown;
    int bar;
};

TEST(CaptureMonitor, ShowsThePercentageRoundedDownAndSetsTheBarOnlyWithinItsRange) {
    const Progress cases[] = {
        {"1000", "0%", 0},     {"1999", "24%", 24},   {"2000", "25%", 25},
        {"999", "-1%", 42}, // before the start; the bar refuses the value and does not change
        {"0", "-25%", 42},     {"", "-25%", 42},      {"no position", "-25%", 42},
        {"4999.4", "99%", 99}, {"5000", "100%", 100}, {"9000", "200%", 42},
        {"9e99", "-25%", 42}, // a value beyond 32 bits counts as position 0
    };
    for (const Progress& c : cases) {
        SCOPED_TRACE(c.position);
        ExtractionBench bench({1000, 4000});
        bench.media.device = nullptr;
        bench.media.answer("status cd position", {.reply = c.position});
        bench.captureState.trackStartMs = 1000;
        bench.captureState.trackEndMs = 5000;
        bench.form.ProgressBar1.setValue(42).passOver();
        std::string shown;
        int bar = -1;
        bench.loop.atYield(1, [&] {
            shown = bench.form.Label33.caption();
            bar = bench.form.ProgressBar1.value();
        });
        bench.form.tmrRecord.fire();
        EXPECT_EQ(shown, c.shown);
        EXPECT_EQ(bar, c.bar);
    }
}

TEST(CaptureMonitor, ShowsZeroForATrackWithoutLength) {
    ExtractionBench bench({1000, 0});
    bench.media.device = nullptr;
    bench.media.answer("status cd position", {.reply = "900"});
    bench.captureState.trackStartMs = 1000;
    bench.captureState.trackEndMs = 1000;
    bench.form.Label33.setCaption("as before");
    ASSERT_TRUE(bench.form.ProgressBar1.setValue(50).ok());
    bench.form.tmrRecord.fire();
    EXPECT_EQ(bench.form.Label33.caption(), "0%");
    EXPECT_EQ(bench.form.ProgressBar1.value(), 0);
}

TEST(CaptureMonitor, OnlyAStopByTheUserEndsATrackIfThePositionQueryFails) {
    QueueBench bench(2);
    bench.media.answer("status cd position", {.status = 300});
    bench.loop.after(5min, [&] {
        EXPECT_TRUE(bench.form.tmrRecord.enabled());
        EXPECT_THAT(bench.disc.saved, IsEmpty());
        bench.form.Command8.click();
    });
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.disc.saved.size(), 1U);
    EXPECT_TRUE(bench.idle());
}

TEST(CaptureMonitor, KeepsTheShownNumberOfBytesUnlessTheReplyIsASigned32BitInteger) {
    ExtractionBench bench({1000, 1000});
    bench.media.answer("status capture length", {.reply = "1234"});
    bench.monitor.ShowCaptureLength();
    EXPECT_EQ(bench.form.lblStatus.caption(), "1234 Bytes");
    for (const char* reply : {"", "many", "3000000000"}) {
        bench.media.answer("status capture length", {.reply = reply});
        bench.monitor.ShowCaptureLength();
        EXPECT_EQ(bench.form.lblStatus.caption(), "1234 Bytes") << reply;
    }
    EXPECT_THAT(std::vector(bench.media.log.begin(), bench.media.log.begin() + 2),
                ElementsAre("set capture time format bytes", "status capture length"));
}

} // namespace
} // namespace sonarith
