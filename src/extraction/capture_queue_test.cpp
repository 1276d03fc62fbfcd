// SPDX-License-Identifier: GPL-3.0-or-later
// Tests which tracks cmdStart_Click captures for the selected node of the tree.
// track_capture_test.cpp tests the start of one track.
#include "extraction/track_capture.h"

#include <initializer_list>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/extraction_bench.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::ExtractionBench;
using test::openDisc;
using test::openRecorder;
using test::record;
using test::savedAs;
using test::setMilliseconds;
using test::setStereo;
using test::ShownBox;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(CmdStart, CapturesOneTrackIfItsNodeIsSelected) {
    ExtractionBench bench({60000, 1000});
    bench.insertDisc();
    bench.select("Track  2 - 00:00:01");
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.media.logWithoutTicks(),
                ElementsAre(openRecorder, setStereo, openDisc, setMilliseconds, record,
                            "play cd from 60000", "stop capture", "stop cd",
                            "save capture " + savedAs(2), "close capture", "close cd"));
    EXPECT_THAT(bench.disc.saved, ElementsAre(test::SavedCapture{savedAs(2), 176400}));
    EXPECT_TRUE(bench.idle());
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_EQ(bench.form.lstRecord.listCount(), 0);
}

TEST(CmdStart, PlaysTheFirstTrackWithoutAStartPosition) {
    ExtractionBench bench({1000, 60000});
    bench.insertDisc();
    bench.select("Track  1 - 00:00:01");
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.media.logWithoutTicks(),
                ElementsAre(openRecorder, setStereo, openDisc, setMilliseconds, record, "play cd",
                            "stop capture", "stop cd", "save capture " + savedAs(1),
                            "close capture", "close cd"));
}

TEST(CmdStart, AfterASingleTrackContinuesWithTheLineAfterTheQueuesCurrentLine) {
    ExtractionBench bench({1000, 1000, 1000});
    bench.insertDisc();
    bench.choose({1, 3});
    ASSERT_TRUE(bench.form.lstRecord.setListIndex(0).ok());
    bench.select("Track  2 - 00:00:01");
    bench.form.cmdStart.click();
    // The selected track is captured instead of the track in the queue's current line; then the
    // track in the next line is captured.
    EXPECT_THAT(bench.disc.saved, ElementsAre(test::SavedCapture{savedAs(2), 176400},
                                              test::SavedCapture{savedAs(3), 176400}));
}

TEST(CmdStart, AfterASingleTrackContinuesWithAllLinesOfAQueueWithoutACurrentLine) {
    ExtractionBench bench({1000, 1000, 1000});
    bench.insertDisc();
    bench.choose({1, 3});
    ASSERT_EQ(bench.form.lstRecord.listIndex(), -1);
    bench.select("Track  2 - 00:00:01");
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.disc.saved, ElementsAre(test::SavedCapture{savedAs(2), 176400},
                                              test::SavedCapture{savedAs(1), 176400},
                                              test::SavedCapture{savedAs(3), 176400}));
}

TEST(CmdStart, AfterASingleTrackIgnoresAQueueOfOneLine) {
    ExtractionBench bench({1000, 1000});
    bench.insertDisc();
    bench.choose({1});
    ASSERT_EQ(bench.form.lstRecord.listIndex(), -1);
    bench.select("Track  2 - 00:00:01");
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.disc.saved, ElementsAre(test::SavedCapture{savedAs(2), 176400}));
}

TEST(CmdStart, AfterASingleTrackIgnoresAQueueThatWasCaptured) {
    ExtractionBench bench({1000, 1000, 1000});
    bench.insertDisc();
    bench.choose({1, 3});
    bench.select("Selected Tracks");
    bench.form.cmdStart.click();
    bench.disc.saved.clear();
    bench.select("Track  2 - 00:00:01");
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.disc.saved, ElementsAre(test::SavedCapture{savedAs(2), 176400}));
}

TEST(CmdStart, RepeatsTheWholeQueueIfATrackIsChosenDuringTheCapture) {
    ExtractionBench bench({1000, 1000, 1000});
    bench.insertDisc();
    bench.choose({1, 2});
    bench.select("Selected Tracks");
    bench.loop.after(1500ms, [&] {
        putOnTop(bench.form.lstRecord, bench.form.lstTracks.list(2), bench.form.List7);
    });
    bench.form.cmdStart.click();
    // Choosing a track fills the list of the queue again, which leaves the list without a current
    // line. So the queue starts again with its first line and repeats the tracks already captured.
    EXPECT_THAT(bench.disc.saved, ElementsAre(test::SavedCapture{savedAs(1), 176400},
                                              test::SavedCapture{savedAs(2), 176400},
                                              test::SavedCapture{savedAs(3), 176400},
                                              test::SavedCapture{savedAs(1), 176400},
                                              test::SavedCapture{savedAs(2), 176400}));
}

TEST(CmdStart, CapturesTheCurrentTrackIfTheNodesTrackNumberOverflows) {
    ExtractionBench bench({1000, 1000});
    bench.insertDisc();
    bench.state.currentTrack = 2;
    bench.select("Track9e9.wav");
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.disc.saved, ElementsAre(test::SavedCapture{savedAs(2), 176400}));
}

TEST(CmdStart, ReplacesTheQueueByAllAvailableTracksIfTheirGroupIsSelected) {
    ExtractionBench bench({1000, 1000});
    bench.insertDisc();
    bench.form.lstRecord.addItem("Track 77 - 00:00:01");
    bench.select("Available Tracks");
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.form.lstTracks.listCount(), 0);
    ASSERT_EQ(bench.form.lstRecord.listCount(), 2);
    EXPECT_EQ(bench.form.lstRecord.list(0), "Track  1 - 00:00:01");
    EXPECT_EQ(bench.form.lstRecord.list(1), "Track  2 - 00:00:01");
    // The line of a captured track stays in the queue; the current line advances.
    EXPECT_EQ(bench.form.lstRecord.listIndex(), 1);
    EXPECT_EQ(bench.disc.saved.size(), 2U);
}

TEST(CmdStart, EndsWithoutAMessageIfNoAvailableTrackIsLeft) {
    ExtractionBench bench({1000, 1000});
    bench.insertDisc();
    bench.select("Available Tracks");
    bench.form.cmdStart.click();
    bench.media.log.clear();
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.media.log, IsEmpty());
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
    EXPECT_EQ(bench.form.lstRecord.listCount(), 0);
    EXPECT_EQ(bench.state.currentTrack, 0);
    EXPECT_EQ(bench.form.caption(), "Extracting Track 0");
    EXPECT_FALSE(bench.form.tmrRecord.enabled());
}

TEST(CmdStart, ExtractsTheChosenTracksInTheOrderOfTheQueue) {
    ExtractionBench bench({1000, 2000, 3000});
    bench.insertDisc();
    bench.choose({3, 1});
    bench.select("Selected Tracks");
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.disc.saved, ElementsAre(test::SavedCapture{savedAs(3), 3 * 176400},
                                              test::SavedCapture{savedAs(1), 176400}));
}

/// The commands that start a track at `firstMs`. For 0 the play command has no position.
std::vector<std::string> startCommands(int firstMs) {
    const std::string play = firstMs == 0 ? "play cd" : "play cd from " + std::to_string(firstMs);
    return {openRecorder, setStereo, openDisc, setMilliseconds, record, play};
}

std::vector<std::string> commandsOf(std::initializer_list<std::vector<std::string>> parts) {
    std::vector<std::string> all;
    for (const std::vector<std::string>& part : parts) {
        all = test::joined(std::move(all), part);
    }
    return all;
}

TEST(CmdStart, SendsTheStartAndTheEndCommandsForEachTrackOfAQueue) {
    ExtractionBench bench({1000, 2000, 3000});
    bench.insertDisc();
    bench.choose({3, 1});
    bench.select("Selected Tracks");
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.media.logWithoutTicks(),
              commandsOf({startCommands(3000), test::endCommands(savedAs(3)), startCommands(0),
                          test::endCommands(savedAs(1))}));
}

TEST(CmdStart, AQueueStartedAfterACancelEndsAfterItsFirstTrack) {
    test::QueueBench bench(5);
    bench.form.Command2.click();
    bench.media.log.clear();
    bench.form.cmdStart.click();
    // CaptureMonitor sends the end commands twice: at the end of the track, and when it stops the
    // queue.
    EXPECT_EQ(bench.media.logWithoutTicks(),
              commandsOf({startCommands(0), test::endCommands(savedAs(1)),
                          test::endCommands(savedAs(1))}));
    EXPECT_EQ(bench.disc.saved.size(), 1U);
}

TEST(CmdStart, ShowsAMessageAndDoesNothingElseIfNoTracksAreChosen) {
    ExtractionBench bench({1000, 1000});
    bench.insertDisc();
    bench.state.currentTrack = 7;
    const int yields = bench.loop.yieldCount();
    bench.select("Selected Tracks");
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.boxes.shown,
                ElementsAre(ShownBox{"You must select tracks to record.", BoxIcon::information}));
    EXPECT_THAT(bench.media.log, IsEmpty());
    EXPECT_EQ(bench.loop.yieldCount(), yields);
    EXPECT_FALSE(bench.form.Command2.visible());
    EXPECT_EQ(bench.state.currentTrack, 7);
}

TEST(CmdStart, CapturesTheCurrentTrackIfTheNodeIsNeitherATrackNorAGroupOfTracks) {
    // A group of files, a collection, and a text that begins with "track" in lower case.
    for (const char* text : {"WAV Files", "CD Tracks", "track  1 - 00:00:01"}) {
        ExtractionBench bench({1000, 1000});
        bench.insertDisc();
        bench.state.currentTrack = 2;
        bench.select(text);
        bench.form.cmdStart.click();
        EXPECT_THAT(bench.disc.saved, ElementsAre(test::SavedCapture{savedAs(2), 176400})) << text;
    }
}

TEST(CmdStart, CapturesTheCurrentTrackIfNothingIsSelected) {
    ExtractionBench bench({1000, 1000});
    bench.insertDisc();
    bench.state.currentTrack = 2;
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.disc.saved, ElementsAre(test::SavedCapture{savedAs(2), 176400}));
}

TEST(CmdStart, ResetsTheEndOfTheCurrentTrackOnlyForAGroupOfTracks) {
    struct Case {
        const char* node;
        std::int32_t endMs;
    };
    for (const Case& c : {Case{"Available Tracks", 0}, Case{"Selected Tracks", 0},
                          Case{"Track  1 - 00:00:01", 77}, Case{"WAV Files", 77}}) {
        ExtractionBench bench({1000, 1000});
        bench.insertDisc();
        bench.choose({1});
        bench.captureState.trackEndMs = 77;
        bench.select(c.node);
        std::int32_t endMs = -1;
        bench.loop.atYield(1, [&] { endMs = bench.captureState.trackEndMs; });
        bench.form.cmdStart.click();
        EXPECT_EQ(endMs, c.endMs) << c.node;
    }
}

TEST(CmdStart, ResetsAnEarlierStopRequest) {
    ExtractionBench bench({1000, 1000});
    bench.insertDisc();
    bench.form.Command8.click();
    ASSERT_EQ(bench.form.Check9.value(), 1);
    bench.select("Selected Tracks");
    bench.form.cmdStart.click();
    EXPECT_FALSE(bench.state.stopRequested);
    EXPECT_EQ(bench.form.Check9.value(), 0);
}

TEST(CmdStart, TheCaptionHasALeadingBlankAtTheFirstYieldAndNoneAtTheSecond) {
    ExtractionBench bench({1000, 1000});
    bench.insertDisc();
    bench.select("Track  2 - 00:00:01");
    std::vector<std::string> seen;
    const auto note = [&] {
        EXPECT_EQ(bench.form.caption(), bench.form.Label3.caption());
        seen.push_back(bench.form.caption() + "|" + bench.form.Label2.caption() + "|" +
                       (bench.form.Command2.visible() ? "cancel" : "no cancel"));
    };
    bench.loop.atYield(1, note);
    bench.loop.atYield(2, note);
    bench.form.cmdStart.click();
    EXPECT_THAT(seen, ElementsAre(" Extracting Track 2||no cancel",
                                  "Extracting Track 2|To: " + savedAs(2) + "|cancel"));
}

} // namespace
} // namespace sonarith
