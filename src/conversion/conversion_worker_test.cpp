// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/conversion_worker.h"

#include "support/conversion_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct WorkerTest : test::ConversionWorld {
    sonarith::Form6& window = windows.Form6;

    WorkerTest() {
        mp3File(source);
        process.currentFile = source;
        form.Label33.setCaption("before");
        form.ProgressBar1.setValue(7).passOver();
    }
    ConversionWorker& worker() { return conversion.worker; }
};

// --- loading -----------------------------------------------------------------------------------

TEST_F(WorkerTest, LoadingTheWindowStartsTheJob) {
    window.load();
    EXPECT_THAT(mp3.log, ElementsAre(setSource, decodeToWav));
    EXPECT_TRUE(process.workerBusy);
    EXPECT_TRUE(window.Timer1.enabled());
    EXPECT_TRUE(window.Timer2.enabled());
    EXPECT_FALSE(window.visible());
}

TEST_F(WorkerTest, TheWindowHasTwoTimersOf500MillisecondsAndACancelButton) {
    window.load();
    EXPECT_EQ(window.Timer1.interval(), 500ms);
    EXPECT_EQ(window.Timer2.interval(), 500ms);
    EXPECT_EQ(window.Command1.caption(), "Cancel");
}

TEST_F(WorkerTest, LoadingTheWindowUnloadsItAtOnceIfAStopIsRequested) {
    process.stopRequested = true;
    process.workerBusy = true;
    window.load();
    EXPECT_FALSE(window.loaded());
    EXPECT_FALSE(process.workerBusy);
    EXPECT_THAT(mp3.log, ElementsAre("Stop"));
    EXPECT_EQ(loop.wakeupCount(), 0U);
}

TEST_F(WorkerTest, EachLoadStartsBothTimersAgain) {
    window.load();
    window.Timer1.setEnabled(false);
    window.unload();
    window.load();
    EXPECT_TRUE(window.Timer1.enabled());
    EXPECT_EQ(loop.wakeupCount(), 2U);
}

// --- starting ------------------------------------------------------------------------------------

TEST_F(WorkerTest, Timer1StartsTheDecodingOfTheSameFileAgainAfterHalfASecond) {
    mp3.duration = 5000ms;
    process.currentWavFile = "c:\\music\\other.wav";
    window.load();
    loop.advance(499ms);
    EXPECT_EQ(mp3.log.size(), 2U);
    loop.advance(1ms);
    EXPECT_THAT(mp3.log, ElementsAre(setSource, decodeToWav, setSource, decodeToWav));
    EXPECT_FALSE(window.Timer1.enabled());
    EXPECT_TRUE(window.Timer2.enabled());
    // There is no third start.
    loop.advance(1s);
    EXPECT_EQ(mp3.log.size(), 4U);
}

TEST_F(WorkerTest, AFileOfNinetyNineBytesIsNeverDecodedAndTheWindowStaysLoaded) {
    mp3File(source, 99);
    window.load();
    loop.advance(1h);
    EXPECT_THAT(mp3.log, IsEmpty());
    EXPECT_TRUE(process.workerBusy);
    EXPECT_TRUE(window.loaded());
    EXPECT_FALSE(window.Timer2.enabled());
    window.unload();
    EXPECT_FALSE(process.workerBusy);
    EXPECT_THAT(mp3.log, ElementsAre("Stop"));
}

TEST_F(WorkerTest, AFileThatIsTooShortOnlyAtTheFirstStartIsDecodedByTheSecondStart) {
    mp3File(source, 99);
    loop.after(400ms, [this] { mp3File(source, 100); });
    window.load();
    loop.advance(500ms);
    EXPECT_THAT(mp3.log, ElementsAre(setSource, decodeToWav));
    loop.advance(10s);
    EXPECT_FALSE(window.loaded());
    EXPECT_EQ(form.Label33.caption(), "100 %");
}

TEST_F(WorkerTest, AMissingFileIsNotDecodedAndTheWorkerStaysBusy) {
    process.currentFile = "c:\\mp3\\missing.mp3";
    window.load();
    loop.advance(10s);
    EXPECT_THAT(mp3.log, IsEmpty());
    EXPECT_TRUE(process.workerBusy);
}

TEST_F(WorkerTest, AFileNameTooShortForABaseNameEndsTheJobAtTheFirstTick) {
    process.currentFile = "c:\\mp3\\mp3";
    mp3File("c:\\mp3\\mp3");
    window.load();
    EXPECT_THAT(mp3.log, IsEmpty());
    EXPECT_TRUE(window.Timer2.enabled());
    loop.advance(500ms);
    EXPECT_FALSE(window.loaded());
    EXPECT_EQ(form.Label33.caption(), "100 %");
}

TEST_F(WorkerTest, AFileThatTheMp3ControlRefusesIsNotDecoded) {
    mp3.failSource = Error{ErrorNumber::fileNotFound, ""};
    window.load();
    EXPECT_THAT(mp3.log, ElementsAre(setSource));
    EXPECT_TRUE(window.Timer2.enabled());
}

TEST_F(WorkerTest, StarthereDecodesTheCurrentFileAndNotTheCurrentWavFile) {
    process.currentWavFile = "c:\\music\\other.wav";
    window.load();
    mp3.log.clear();
    worker().starthere();
    EXPECT_THAT(mp3.log, ElementsAre(setSource, decodeToWav));
}

// --- progress ------------------------------------------------------------------------------------

TEST_F(WorkerTest, EachTickShowsThePercentageRoundedHalfToEven) {
    mp3.duration = 4000ms;
    mp3.length = 8;
    window.load();
    std::vector<std::string> texts;
    std::vector<int> bars;
    for (int tick = 0; tick < 7; ++tick) {
        loop.advance(500ms);
        texts.push_back(form.Label33.caption());
        bars.push_back(form.ProgressBar1.value());
    }
    EXPECT_THAT(texts, ElementsAre("12%", "25%", "38%", "50%", "62%", "75%", "88%"));
    EXPECT_THAT(bars, ElementsAre(12, 25, 38, 50, 62, 75, 88));
}

TEST_F(WorkerTest, ATickReadsThePositionOnceForTheTextAndOnceForTheBarAndYieldsOnce) {
    window.load();
    mp3.reads.clear();
    const int yields = loop.yieldCount();
    worker().Timer2_Timer();
    EXPECT_THAT(mp3.reads, ElementsAre("Busy", "Length", "Position", "Length", "Position"));
    EXPECT_EQ(loop.yieldCount() - yields, 1);
    EXPECT_TRUE(window.loaded());
}

TEST_F(WorkerTest, TheLastTickShows100PercentWithABlankAndUnloadsTheWindow) {
    mp3.duration = 1200ms;
    window.load();
    loop.advance(1499ms);
    EXPECT_TRUE(window.loaded());
    mp3.log.clear();
    const int yields = loop.yieldCount();
    std::string shown;
    loop.atYield(1, [&] {
        EXPECT_THAT(mp3.log, ElementsAre("Stop"));
        EXPECT_FALSE(window.Timer2.enabled());
        EXPECT_TRUE(window.loaded());
        EXPECT_TRUE(process.workerBusy);
        shown = form.Label33.caption() + " " + std::to_string(form.ProgressBar1.value());
    });
    loop.advance(1ms);
    EXPECT_EQ(shown, "100 % 100");
    EXPECT_EQ(loop.yieldCount() - yields, 2);
    // The tick, the final steps and the unload send one "Stop" each.
    EXPECT_THAT(mp3.log, ElementsAre("Stop", "Stop", "Stop"));
    EXPECT_FALSE(window.loaded());
    EXPECT_FALSE(process.workerBusy);
    EXPECT_EQ(loop.wakeupCount(), 0U);
    EXPECT_EQ(disk.content("c:\\music\\Song.wav")->size(), mp3.wholeBytes);
}

TEST_F(WorkerTest, AFirstTickThatFindsTheMp3ControlIdleShowsTheJobAsComplete) {
    mp3.failDecode = Error{ErrorNumber::pathFileAccess, ""};
    window.load();
    loop.advance(500ms);
    EXPECT_EQ(form.Label33.caption(), "100 %");
    EXPECT_FALSE(window.loaded());
}

TEST_F(WorkerTest, AStopEndsTheJobAtTheNextTickAndLeavesTheDisplayAsItIs) {
    mp3.duration = 10s;
    window.load();
    loop.advance(700ms);
    process.stopRequested = true;
    mp3.log.clear();
    loop.advance(300ms);
    EXPECT_EQ(form.Label33.caption(), "5%");
    EXPECT_THAT(mp3.log, ElementsAre("Stop", "Stop"));
    EXPECT_FALSE(window.loaded());
    EXPECT_EQ(disk.content("c:\\music\\Song.wav")->size(), mp3.partialBytes);
}

TEST_F(WorkerTest, ATickThatFindsTheMp3ControlIdleIgnoresAStop) {
    mp3.duration = 300ms;
    window.load();
    process.stopRequested = true;
    loop.advance(500ms);
    EXPECT_EQ(form.Label33.caption(), "100 %");
}

// --- failures of a tick --------------------------------------------------------------------------

TEST_F(WorkerTest, ALengthOfZeroFromTheMp3ControlEndsTheJob) {
    mp3.duration = 10s;
    mp3.length = 0;
    window.load();
    loop.advance(500ms);
    EXPECT_FALSE(window.loaded());
    EXPECT_EQ(form.Label33.caption(), "before");
    EXPECT_EQ(form.ProgressBar1.value(), 7);
}

TEST_F(WorkerTest, APercentageThatTheBarRefusesIsShownAsTextAndEndsTheJob) {
    for (const auto& [position, text] :
         {std::pair(1010, std::string("101%")), std::pair(-10, std::string("-1%"))}) {
        mp3.position = position;
        window.load();
        loop.advance(500ms);
        EXPECT_FALSE(window.loaded());
        EXPECT_EQ(form.Label33.caption(), text);
        EXPECT_EQ(form.ProgressBar1.value(), 7);
    }
}

TEST_F(WorkerTest, APercentageBeyondSixteenBitsEndsTheJobAndIsNotShown) {
    mp3.position = 1'000'000;
    window.load();
    loop.advance(500ms);
    EXPECT_FALSE(window.loaded());
    EXPECT_EQ(form.Label33.caption(), "before");
}

TEST_F(WorkerTest, AnMp3ControlThatFailsToStopEndsTheJobAndLeavesTheDisplayAsItIs) {
    mp3.duration = 100ms;
    mp3.failStop = Error{ErrorNumber::deviceInputOutput, ""};
    window.load();
    const int yields = loop.yieldCount();
    loop.advance(500ms);
    EXPECT_FALSE(window.loaded());
    EXPECT_FALSE(process.workerBusy);
    EXPECT_EQ(form.Label33.caption(), "before");
    EXPECT_EQ(loop.yieldCount(), yields);
}

// --- unloading from outside ----------------------------------------------------------------------

TEST_F(WorkerTest, AnUnloadDuringTheDecodingStopsTheMp3ControlAndKeepsTheWrittenPart) {
    mp3.duration = 10s;
    window.load();
    loop.advance(700ms);
    mp3.log.clear();
    window.unload();
    EXPECT_THAT(mp3.log, ElementsAre("Stop"));
    EXPECT_FALSE(process.workerBusy);
    EXPECT_EQ(disk.content("c:\\music\\Song.wav")->size(), mp3.partialBytes);
    EXPECT_EQ(loop.wakeupCount(), 0U);
}

TEST_F(WorkerTest, AnUnloadStopsTheMp3ControlBeforeItClearsWorkerBusy) {
    window.load();
    bool busyAtStop = false;
    mp3.onCall = [&](const std::string& call) {
        busyAtStop = call == "Stop" && process.workerBusy;
    };
    window.unload();
    EXPECT_TRUE(busyAtStop);
}

TEST_F(WorkerTest, CancelRequestsAStopAndUnloadsTheWindow) {
    window.load();
    window.Command1.click();
    EXPECT_TRUE(process.stopRequested);
    EXPECT_FALSE(window.loaded());
    EXPECT_FALSE(process.workerBusy);
}

TEST_F(WorkerTest, ATickDuringWhichTheWindowIsLoadedAgainDoesNotAffectTheNewJob) {
    for (const auto& [duration, yield] : {std::pair(10s, 1), std::pair(0s, 1), std::pair(0s, 2)}) {
        SCOPED_TRACE(std::to_string(duration.count()) + " s, yield " + std::to_string(yield));
        mp3.duration = duration + 100ms;
        window.load();
        loop.advance(499ms);
        bool ran = false;
        loop.atYield(yield, [&] {
            ran = true;
            window.unload();
            mp3.duration = 10s;
            window.load();
            mp3.log.clear();
        });
        loop.advance(1ms);
        EXPECT_TRUE(ran);
        EXPECT_TRUE(window.loaded());
        EXPECT_TRUE(process.workerBusy);
        EXPECT_TRUE(mp3.busy());
        EXPECT_THAT(mp3.log, IsEmpty());
        window.unload();
        EXPECT_EQ(loop.wakeupCount(), 0U);
    }
}

TEST_F(WorkerTest, RepeatedLoadsInsideTicksLeaveNothingRunning) {
    mp3.duration = 100ms;
    for (int n = 0; n < 20; ++n) {
        window.load();
        loop.atYield(1, [&] {
            window.unload();
            window.load();
        });
        loop.advance(5s);
        EXPECT_FALSE(window.loaded());
        EXPECT_EQ(loop.wakeupCount(), 0U);
    }
}

TEST_F(WorkerTest, TheProgramCanEndInsideATick) {
    mp3.duration = 10s;
    window.load();
    loop.atYield(1, [this] { loop.endProgram(); });
    EXPECT_THROW(loop.advance(1s), test::ProgramEnded);
    EXPECT_EQ(loop.yieldsAfterEnd(), 0);
}

} // namespace
} // namespace sonarith
