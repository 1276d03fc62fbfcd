// SPDX-License-Identifier: GPL-3.0-or-later
// Tests each way to end a capture early: Command8 (its tool tip is "Stop Everything"), Command2
// ("Cancel"), Command1 (too little disk space), device failures, and Command12 ("Stop playing CD").
// stop_sweep_test.cpp tests the stops at every moment of a capture.
#include "extraction/capture_monitor.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "support/extraction_bench.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::endCommands;
using test::joined;
using test::linesOf;
using test::QueueBench;
using test::savedAs;
using test::SavedCapture;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(StopEverything, SavesTheCapturedPartAndAddsItToTheTree) {
    QueueBench bench(3);
    bench.form.tmrWarning.setEnabled(true);
    bench.loop.after(1550ms, [&] {
        bench.media.log.clear();
        bench.form.Command8.click();
    });
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.media.log, endCommands(savedAs(2)));
    EXPECT_THAT(bench.disc.saved, ElementsAre(SavedCapture{savedAs(1), 176400},
                                              SavedCapture{savedAs(2), 176400 * 55 / 100}));
    EXPECT_TRUE(bench.state.stopRequested);
    EXPECT_TRUE(bench.form.Timer1.enabled());
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_EQ(bench.captureState.trackEndMs, 0);
    EXPECT_EQ(bench.form.lstRecord.listIndex(), 2);
    EXPECT_FALSE(bench.form.tmrWarning.enabled());
    EXPECT_THAT(linesOf(bench.form.List1), ElementsAre(savedAs(2)));
    EXPECT_TRUE(bench.treeHolds(savedAs(2)));
    EXPECT_TRUE(bench.idle());
    // After a stop outside a tick, Check9 stays at 1 until the next extraction starts.
    EXPECT_EQ(bench.form.Check9.value(), 1);
}

TEST(StopEverything, SendsNoDeviceCommandAndDoesNotYieldIfNoCaptureIsRunning) {
    QueueBench bench(2);
    bench.captureState.trackEndMs = 9;
    bench.form.tmrWarning.setEnabled(true);
    bench.form.Disablem();
    const int yields = bench.loop.yieldCount();
    bench.form.Command8.click();
    EXPECT_THAT(bench.media.log, IsEmpty());
    EXPECT_EQ(bench.loop.yieldCount(), yields);
    EXPECT_TRUE(bench.state.stopRequested);
    EXPECT_TRUE(bench.form.Timer1.enabled());
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_EQ(bench.captureState.trackEndMs, 0);
    EXPECT_TRUE(bench.form.tmrWarning.enabled());
    EXPECT_EQ(bench.form.Check9.value(), 1);
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.form.Check9.value(), 0);
    EXPECT_EQ(bench.disc.saved.size(), 2U);
}

TEST(StopEverything, KeepsTheLastPercentageVisibleForFiveSeconds) {
    QueueBench bench(1 + 1);
    bench.loop.after(550ms, [&] { bench.form.Command8.click(); });
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.form.Label33.caption(), "50%");
    bench.loop.advance(4s);
    EXPECT_EQ(bench.form.Label33.caption(), "50%");
    bench.loop.advance(1s);
    EXPECT_EQ(bench.form.Label33.caption(), "");
    EXPECT_FALSE(bench.form.Timer1.enabled());
}

TEST(StopEverything, SendsTheEndCommandsTwiceIfClickedDuringATick) {
    QueueBench bench(3);
    bench.files.addFile("c:\\wavfiles\\12053477-1.mp3", std::string(200, 'm'));
    // Yields 1 and 2 occur while the capture starts, yield 3 while cmdStart waits for the end of
    // the capture, yield 4 in the first tick.
    bench.loop.atYield(4, [&] {
        ASSERT_EQ(bench.media.log.back(), "status cd current track");
        bench.media.log.clear();
        bench.form.Command8.click();
    });
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.media.log, joined(endCommands(savedAs(1)), endCommands(savedAs(1))));
    // The second save command had no recording to save.
    EXPECT_EQ(bench.disc.saved.size(), 1U);
    EXPECT_EQ(bench.state.currentFile, "c:\\wavfiles\\12053477-1.mp3");
    EXPECT_TRUE(bench.treeHolds(savedAs(1)));
    EXPECT_TRUE(bench.treeHolds("c:\\wavfiles\\12053477-1.mp3"));
    EXPECT_THAT(linesOf(bench.form.List2), ElementsAre("c:\\wavfiles\\12053477-1.mp3"));
    EXPECT_EQ(bench.form.Check9.value(), 0);
    EXPECT_EQ(bench.form.Label3.caption(), "Next action:");
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_TRUE(bench.idle());
}

TEST(StopEverything, StopsTheQueueBetweenTwoTracks) {
    for (const int offset : {1, 2}) {
        SCOPED_TRACE(offset);
        QueueBench bench(2);
        bench.disc.onSave = [&, offset](const SavedCapture& save) {
            bench.files.addFile(save.path, std::string(200, 'w'));
            bench.loop.atYield(offset, [&] { bench.form.Command8.click(); });
            bench.disc.onSave = nullptr;
        };
        bench.form.cmdStart.click();
        EXPECT_THAT(std::vector(bench.media.log.end() - 10, bench.media.log.end()),
                    joined(endCommands(savedAs(1)), endCommands(savedAs(1))));
        EXPECT_EQ(bench.disc.saved.size(), 1U);
        // The monitor's timer was not running, so Command8 left the current line of lstRecord
        // unchanged. endByStop() marks this line.
        EXPECT_EQ(bench.form.lstRecord.listIndex(), 0);
        EXPECT_TRUE(bench.form.lstRecord.selected(0));
        EXPECT_TRUE(bench.treeHolds(savedAs(1)));
        EXPECT_EQ(bench.form.Check9.value(), 0);
        EXPECT_TRUE(bench.commandsOpen());
        EXPECT_EQ(bench.form.Label3.caption(), "Next action:");
    }
}

TEST(StopEverything, TakesEffectAtTheFirstTickIfClickedWhileTheTrackStarts) {
    QueueBench bench(2);
    bench.loop.atYield(2, [&] { bench.form.Command8.click(); });
    bench.form.cmdStart.click();
    // The first tick stops the capture, without querying the device's track.
    EXPECT_EQ(bench.timesSent("status cd current track"), 0);
    EXPECT_THAT(bench.disc.saved, ElementsAre(SavedCapture{savedAs(1), 17640}));
    EXPECT_TRUE(bench.form.lstRecord.selected(0));
    EXPECT_TRUE(bench.treeHolds(savedAs(1)));
    EXPECT_TRUE(bench.commandsOpen());
}

TEST(StopEverything, ShortensOnlyTheFirstTrackIfClickedBeforeThatTrackStarts) {
    // StartTrackRecording2 resets stopRequested, so the queue continues. StartTrackRecording2 does
    // not reset Check9, a hidden check box; because Check9 is 1, the first tick ends the track.
    QueueBench bench(2);
    bench.loop.atYield(1, [&] { bench.form.Command8.click(); });
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.disc.saved,
                ElementsAre(SavedCapture{savedAs(1), 17640}, SavedCapture{savedAs(2), 176400}));
}

TEST(StopEverything, AddsTheWavAndTheMp3OfTheSameNameIfClickedJustBeforeTheQueueEnds) {
    QueueBench bench(2);
    bench.files.addFile("c:\\wavfiles\\12053477-2.mp3", std::string(200, 'm'));
    bench.disc.onSave = [&](const SavedCapture& save) {
        bench.files.addFile(save.path, std::string(200, 'w'));
        if (save.path == savedAs(2)) {
            bench.loop.atYield(1, [&] { bench.form.Command8.click(); });
        }
    };
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.disc.saved.size(), 2U);
    EXPECT_EQ(bench.timesSent("save capture " + savedAs(2)), 1);
    EXPECT_THAT(linesOf(bench.form.List1), ElementsAre(savedAs(2)));
    EXPECT_THAT(linesOf(bench.form.List2), ElementsAre("c:\\wavfiles\\12053477-2.mp3"));
    EXPECT_TRUE(bench.commandsOpen());
}

TEST(StopEverything, ListsTheFileInLowerCaseAndAgainInItsOwnCase) {
    QueueBench bench(2);
    bench.state.settings.decodePath = "C:\\WavFiles";
    bench.loop.after(550ms, [&] { bench.form.Command8.click(); });
    bench.form.cmdStart.click();
    EXPECT_THAT(linesOf(bench.form.List1),
                ElementsAre("c:\\wavfiles\\12053477-1.wav", "C:\\WavFiles\\12053477-1.wav"));
}

TEST(StopEverything, AddsAListEntryButNoNodeForAFileThatWasNotSaved) {
    QueueBench bench(2);
    bench.media.answerPrefix("save capture", {.status = 300});
    bench.loop.after(550ms, [&] { bench.form.Command8.click(); });
    bench.form.cmdStart.click();
    EXPECT_THAT(linesOf(bench.form.List1), ElementsAre(savedAs(1)));
    EXPECT_FALSE(bench.treeHolds(savedAs(1)));
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
}

TEST(Cancel, StopsTheCaptureAndUnloadsForm6AndHidesTheCancelButton) {
    QueueBench bench(2);
    bench.loop.after(550ms, [&] {
        bench.windows.Form6.load();
        bench.form.Command2.click();
        EXPECT_FALSE(bench.windows.Form6.loaded());
        EXPECT_FALSE(bench.form.Command2.visible());
    });
    bench.form.cmdStart.click();
    EXPECT_TRUE(bench.state.stopRequested);
    EXPECT_TRUE(bench.state.cancelRequested);
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_THAT(bench.disc.saved, ElementsAre(SavedCapture{savedAs(1), 176400 * 55 / 100}));
    EXPECT_TRUE(bench.treeHolds(savedAs(1)));
}

TEST(Cancel, EndsEveryLaterQueueAfterItsFirstTrack) {
    QueueBench bench(5);
    bench.form.Command2.click();
    for (const std::size_t runs : {1U, 2U}) {
        bench.form.cmdStart.click();
        EXPECT_EQ(bench.disc.saved.size(), runs);
        // The first track is complete. The monitor stops the queue and adds the track to the tree.
        EXPECT_EQ(bench.disc.saved.back(), (SavedCapture{savedAs(1), 176400}));
        EXPECT_TRUE(bench.form.lstRecord.selected(0));
        EXPECT_TRUE(bench.treeHolds(savedAs(1)));
        EXPECT_TRUE(bench.commandsOpen());
        EXPECT_TRUE(bench.idle());
    }
}

TEST(Cancel, DoesNotAffectALaterQueueOfOneTrack) {
    QueueBench bench(2);
    ASSERT_TRUE(bench.form.lstRecord.removeItem(1).ok());
    bench.form.Command2.click();
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.disc.saved.size(), 1U);
    EXPECT_THAT(linesOf(bench.form.List1), IsEmpty());
}

TEST(LowDiskSpace, StopsTheCaptureButNotLaterQueues) {
    QueueBench bench(3);
    bench.loop.after(550ms, [&] {
        bench.windows.Form6.load();
        bench.monitor.Command1_Click();
        EXPECT_FALSE(bench.windows.Form6.loaded());
    });
    bench.form.cmdStart.click();
    EXPECT_TRUE(bench.state.stopRequested);
    EXPECT_FALSE(bench.state.cancelRequested);
    EXPECT_TRUE(bench.form.Command2.visible());
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_EQ(bench.disc.saved.size(), 1U);
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.disc.saved.size(), 4U);
}

TEST(DeviceFailure, EndsTheQueueAndLeavesTheButtonsAndMenusOfTheWindowDisabled) {
    QueueBench bench(3);
    bench.form.Disablem();
    bench.form.tmrRecord.setEnabled(true);
    bench.form.tmrWarning.setEnabled(true);
    bench.captureState.trackEndMs = 5;
    bench.state.currentFile = "c:\\x.wav";
    bench.monitor.cmdCancel_Click();
    EXPECT_EQ(bench.media.log, endCommands("c:\\x.wav"));
    EXPECT_EQ(bench.captureState.trackEndMs, 0);
    EXPECT_EQ(bench.form.lstRecord.listIndex(), 2);
    EXPECT_FALSE(bench.form.tmrRecord.enabled());
    EXPECT_FALSE(bench.form.tmrWarning.enabled());
    EXPECT_FALSE(bench.commandsOpen());
    EXPECT_FALSE(bench.state.stopRequested);
    EXPECT_FALSE(bench.form.Timer1.enabled());
}

TEST(StopPlaying, LosesARunningCaptureAndLeavesItsTimerRunning) {
    QueueBench bench(2);
    bench.loop.after(550ms, [&] { bench.form.Command12.click(); });
    bench.loop.after(10min, [&] {
        EXPECT_TRUE(bench.form.tmrRecord.enabled());
        EXPECT_EQ(bench.form.Label33.caption(), "0%");
        EXPECT_FALSE(bench.commandsOpen());
        bench.form.Command8.click();
    });
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.disc.saved, IsEmpty());
    EXPECT_TRUE(bench.idle());
    EXPECT_TRUE(bench.commandsOpen());
}

TEST(EndOfAQueue, ResetsTheDisplaysButNotTheCommandsIfNoStopIsRequested) {
    QueueBench bench(1 + 1);
    bench.form.Disablem();
    bench.form.lstRecord.setListIndex(1).passOver();
    bench.form.Label3.setCaption("x");
    bench.form.tmrRecord.fire();
    EXPECT_EQ(bench.form.Label3.caption(), "Next action:");
    EXPECT_FALSE(bench.commandsOpen());
    EXPECT_THAT(linesOf(bench.form.List1), IsEmpty());
}

TEST(EndOfAQueue, LeavesCurrentFileUnchangedIfItsNameIsTooShortForAnExtension) {
    QueueBench bench(1 + 1);
    bench.state.stopRequested = true;
    bench.state.currentFile = "a";
    bench.form.lstRecord.setListIndex(1).passOver();
    bench.form.tmrRecord.fire();
    EXPECT_EQ(bench.state.currentFile, "a");
}

} // namespace
} // namespace sonarith
