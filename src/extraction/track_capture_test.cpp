// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/track_capture.h"

#include <gmock/gmock.h>

#include "support/extraction_bench.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::endCommands;
using test::ExtractionBench;
using test::joined;
using test::openDisc;
using test::openRecorder;
using test::record;
using test::savedAs;
using test::setMilliseconds;
using test::setStereo;
using test::ShownBox;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(StartTrackRecording2, DisablesButtonsAndMenusOfTheMainWindowAndReturnsWhileTheCaptureRuns) {
    ExtractionBench bench({60000, 30000, 20000});
    bench.insertDisc();
    bench.state.stopRequested = true;
    bench.windows.Form6.load();
    bench.capture.StartTrackRecording2(2);
    EXPECT_FALSE(bench.state.stopRequested);
    EXPECT_TRUE(bench.form.tmrRecord.enabled());
    EXPECT_TRUE(bench.disc.recording());
    EXPECT_TRUE(bench.disc.playing());
    EXPECT_FALSE(bench.commandsOpen());
    EXPECT_FALSE(bench.windows.Form6.loaded());
    EXPECT_EQ(bench.captureState.trackStartMs, 60000);
    EXPECT_EQ(bench.captureState.trackEndMs, 90000);
    EXPECT_EQ(bench.state.currentFile, savedAs(2));
}

TEST(StartTrackRecording2, CapturesMonoForFormatZero) {
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.state.settings.audioFormat = 0;
    bench.capture.StartTrackRecording2(1);
    EXPECT_THAT(bench.media.log,
                ElementsAre(openRecorder,
                            "set capture samplespersec 44100 channels 1 bitspersample 16 "
                            "alignment 2 bytespersec 88200",
                            openDisc, setMilliseconds, record, "play cd"));
}

struct DeviceFailure {
    std::string command;
    std::string message;
    std::vector<std::string> sentUpToTheFailure;
    bool commandsOpen;
};

std::vector<DeviceFailure> deviceFailures() {
    return {
        {openRecorder, "Error opening waveaudio", {openRecorder}, true},
        {setStereo,
         "Error setting capture recording paramaters",
         {openRecorder, setStereo, "close capture"},
         true},
        // In the next two cases the main window's commands are disabled in spite of the failure and
        // stay disabled.
        {openDisc, "Error opening cd!", {openRecorder, setStereo, openDisc}, false},
        {"play cd from 60000",
         "Error playing cd!",
         {openRecorder, setStereo, openDisc, setMilliseconds, record, "play cd from 60000"},
         false},
    };
}

TEST(StartTrackRecording2, EndsTheQueueWithAMessageIfADeviceFails) {
    for (const DeviceFailure& failure : deviceFailures()) {
        SCOPED_TRACE(failure.message);
        ExtractionBench bench({60000, 30000, 1000});
        bench.insertDisc();
        bench.choose({2, 3, 1});
        bench.select("Selected Tracks");
        bench.form.tmrWarning.setEnabled(true);
        bench.media.answer(failure.command, {.status = 300});
        bench.form.cmdStart.click();
        EXPECT_THAT(bench.boxes.shown, ElementsAre(ShownBox{failure.message, BoxIcon::critical}));
        EXPECT_EQ(bench.media.log, joined(failure.sentUpToTheFailure, endCommands(savedAs(2))));
        EXPECT_EQ(bench.captureState.trackEndMs, 0);
        EXPECT_EQ(bench.form.lstRecord.listIndex(), 2);
        EXPECT_FALSE(bench.form.tmrWarning.enabled());
        EXPECT_TRUE(bench.idle());
        EXPECT_EQ(bench.commandsOpen(), failure.commandsOpen);
    }
}

TEST(StartTrackRecording2, EndsWithAMessageForAnInvalidFormat) {
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.state.settings.audioFormat = 2;
    bench.capture.StartTrackRecording2(1);
    EXPECT_THAT(bench.boxes.texts(), ElementsAre("Error setting capture recording paramaters"));
    EXPECT_EQ(bench.media.log,
              joined({openRecorder,
                      "set capture samplespersec 0 channels 0 bitspersample 0 alignment 0 "
                      "bytespersec 0",
                      "close capture"},
                     endCommands(savedAs(1))));
}

TEST(StartTrackRecording2, IgnoresFailuresOfTheTimeFormatAndRecordCommands) {
    ExtractionBench bench({1000, 60000});
    bench.insertDisc();
    bench.media.answer(setMilliseconds, {.status = 300});
    bench.media.answer(record, {.status = 300});
    bench.select("Track  1 - 00:00:01");
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
    EXPECT_THAT(bench.disc.saved, ElementsAre(test::SavedCapture{savedAs(1), 0}));
}

TEST(StartTrackRecording2, LetsTheMonitorTickWhileAMessageIsOpen) {
    for (const DeviceFailure& failure : deviceFailures()) {
        SCOPED_TRACE(failure.message);
        ExtractionBench bench({60000, 30000});
        bench.insertDisc();
        bench.select("Track  2 - 00:00:30");
        bench.media.answer(failure.command, {.status = 300});
        std::size_t ticks = 0;
        bench.boxes.whileUp = [&](const ShownBox&) {
            EXPECT_TRUE(bench.form.tmrRecord.enabled());
            bench.loop.advance(250ms);
            ticks = static_cast<std::size_t>(
                std::count(bench.media.log.begin(), bench.media.log.end(), "status cd position"));
        };
        bench.form.cmdStart.click();
        EXPECT_EQ(ticks, 2U);
        EXPECT_TRUE(bench.idle());
    }
}

struct NoTrack {
    std::int32_t track;
    std::string count;
};

TEST(StartTrackRecording2, SendsNothingForATrackThatDoesNotExist) {
    for (const NoTrack& c : {NoTrack{0, "2"}, NoTrack{3, "2"}, NoTrack{-1, "2"}, NoTrack{5, ""}}) {
        ExtractionBench bench({60000, 30000});
        bench.insertDisc();
        bench.form.lblNumTracks.setCaption(c.count);
        bench.form.tmrRecord.setEnabled(true);
        bench.capture.StartTrackRecording2(c.track);
        EXPECT_FALSE(bench.form.tmrRecord.enabled()) << c.track;
        EXPECT_EQ(bench.captureState.trackEndMs, 0) << c.track;
        EXPECT_THAT(bench.media.log, IsEmpty()) << c.track;
        EXPECT_TRUE(bench.commandsOpen()) << c.track;
    }
}

TEST(StartTrackRecording2, SendsNothingForATrackThatEndsBeforeOneMillisecond) {
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.captureState.trackLengthMs.set(1, -5).passOver();
    bench.capture.StartTrackRecording2(1);
    EXPECT_FALSE(bench.form.tmrRecord.enabled());
    EXPECT_THAT(bench.media.log, IsEmpty());
}

TEST(StartTrackRecording2, SendsNothingForATrackWhoseEndIsBeyond32Bits) {
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.captureState.trackLengthMs.set(1, INT32_MAX).passOver();
    bench.capture.StartTrackRecording2(2);
    EXPECT_EQ(bench.captureState.trackEndMs, 0);
    EXPECT_THAT(bench.media.log, IsEmpty());
}

TEST(StartTrackRecording2, CalculatesThePositionsAfterItsYield) {
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.loop.atYield(1, [&] { bench.captureState.trackLengthMs.set(1, 500).passOver(); });
    bench.capture.StartTrackRecording2(2);
    EXPECT_EQ(bench.captureState.trackStartMs, 500);
    EXPECT_EQ(bench.captureState.trackEndMs, 30500);
}

TEST(StartTrackRecording2, StartsAtZeroIfLengthsAreKnownButTheTrackCountIsNot) {
    // A refresh that cannot open the disc device causes this state: it clears the label with the
    // track count and keeps the lengths.
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.form.lblNumTracks.setCaption("");
    bench.capture.StartTrackRecording2(2);
    EXPECT_EQ(bench.media.log.back(), "play cd");
    EXPECT_EQ(bench.captureState.trackEndMs, 30000);
}

// --- the file name -------------------------------------------------------------------------

TEST(FileNumber, IsOneMoreThanTheProductOfIdentityAndFractionRoundedDown) {
    EXPECT_EQ(fileNumber("48213906", 0.25F), 12053477);
    EXPECT_EQ(fileNumber("48213906", 0.0F), 1);
    EXPECT_EQ(fileNumber("3", 0.5F), 2);
    EXPECT_EQ(fileNumber(" 10.5 ", 0.5F), 6);
}

TEST(FileNumber, IsRoundedDownForANegativeIdentityToo) {
    EXPECT_EQ(fileNumber("-5", 0.5F), -2);
}

TEST(FileNumber, IsZeroForAnIdentityThatIsNoNumber) {
    for (const char* identity : {"", "1A2B", "12-34", "disc"}) {
        EXPECT_EQ(fileNumber(identity, 0.5F), 0) << identity;
    }
}

TEST(FileNumber, IsZeroIfTheResultDoesNotFitThirtyTwoBits) {
    EXPECT_EQ(fileNumber("4294967294", 0.5F), 0);
    EXPECT_EQ(fileNumber("4294967292", 0.5F), 2147483647);
    EXPECT_EQ(fileNumber("-1e300", 0.5F), 0);
    EXPECT_EQ(fileNumber(std::string(63, '9'), 0.5F), 0);
}

TEST(FileName, ConsistsOfTheDestinationFolderTheNumberAndTheTrack) {
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.state.settings.decodePath = "D:\\My Music";
    bench.disc.identity = "unused";
    bench.random.next = 0.5F;
    bench.capture.StartTrackRecording2(2);
    EXPECT_EQ(bench.state.currentFile, "D:\\My Music\\24106954-2.wav");
    EXPECT_EQ(bench.random.reseeds, 2);
}

TEST(FileName, StartsWithZeroForAnIdentityThatIsNoNumber) {
    ExtractionBench bench({60000, 30000});
    bench.disc.identity = "A1";
    bench.insertDisc();
    bench.capture.StartTrackRecording2(1);
    EXPECT_EQ(bench.state.currentFile, "c:\\wavfiles\\0-1.wav");
}

TEST(FileName, IsNotQuotedInTheSaveCommand) {
    ExtractionBench bench({1000, 30000});
    bench.insertDisc();
    bench.state.settings.decodePath = "c:\\my music";
    bench.select("Track  1 - 00:00:01");
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.disc.saved.at(0).path, "c:\\my music\\12053477-1.wav");
}

/// Makes `text` the selected entry of the preferences' format list.
void selectFormat(ExtractionBench& bench, const std::string& text) {
    ComboBox& formats = touched(bench.windows.FrmPrefs).cbxFormat;
    formats.addItem(text);
    formats.choose(formats.listCount() - 1);
}

// --- StartTrackRecording1, which the program does not call ---------------------------------

TEST(StartTrackRecording1, UsesTheSelectedFormatAndTheItemDataOfTheQueuesCurrentLine) {
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.choose({1, 2});
    bench.form.lstRecord.setListIndex(1).passOver();
    bench.form.lstRecord.setItemData(1, 2).passOver();
    selectFormat(bench, "44.100Hz, 16bit Mono, 86k/sec");
    bench.state.stopRequested = true;
    const int yields = bench.loop.yieldCount();
    bench.capture.StartTrackRecording1(1);
    EXPECT_THAT(bench.media.log,
                ElementsAre(openRecorder,
                            "set capture samplespersec 44100 channels 1 bitspersample 16 "
                            "alignment 2 bytespersec 88200",
                            openDisc, setMilliseconds, record, "play cd from 60000"));
    EXPECT_EQ(bench.form.caption(), "Extracting Track 2");
    EXPECT_EQ(bench.form.Label3.caption(), "Extracting Track 2");
    EXPECT_EQ(bench.form.Label2.caption(), "To: " + savedAs(2));
    EXPECT_FALSE(bench.state.stopRequested);
    EXPECT_FALSE(bench.commandsOpen());
    // Unlike StartTrackRecording2, this function neither yields nor starts a timer.
    EXPECT_EQ(bench.loop.yieldCount(), yields);
    EXPECT_FALSE(bench.form.tmrRecord.enabled());
}

TEST(StartTrackRecording1, OpensOnlyTheRecorderForATrackThatDoesNotExist) {
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.form.tmrRecord.setEnabled(true);
    bench.capture.StartTrackRecording1(3);
    EXPECT_THAT(bench.media.log, ElementsAre(openRecorder));
    EXPECT_TRUE(bench.form.tmrRecord.enabled());
    EXPECT_FALSE(bench.commandsOpen());
}

TEST(StartTrackRecording1, UsesItsArgumentIfTheQueueHasNoCurrentLine) {
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.choose({1});
    selectFormat(bench, "44.100Hz, 16bit Stereo, 172k/sec");
    bench.capture.StartTrackRecording1(2);
    EXPECT_EQ(bench.form.Label2.caption(), "To: " + savedAs(2));
    EXPECT_EQ(bench.timesSent("play cd from 60000"), 1);
}

TEST(StartTrackRecording1, EndsWithAMessageForAnUnknownFormatText) {
    ExtractionBench bench({60000, 30000});
    bench.insertDisc();
    bench.choose({1});
    bench.form.lstRecord.setListIndex(0).passOver();
    bench.form.lstRecord.setItemData(0, 1).passOver();
    bench.capture.StartTrackRecording1(1);
    EXPECT_THAT(bench.boxes.texts(), ElementsAre("Error setting capture recording paramaters"));
    EXPECT_TRUE(bench.commandsOpen());
}

} // namespace
} // namespace sonarith
