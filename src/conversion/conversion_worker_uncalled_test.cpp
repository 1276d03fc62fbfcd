// SPDX-License-Identifier: GPL-3.0-or-later
// Tests two functions of the conversion worker that nothing in the program calls: StartDecoding()
// and DecodeCheckedFiles(). conversion_worker_test.cpp tests the other functions.
#include "conversion/conversion_worker.h"

#include "support/conversion_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// Loads the worker's window and stops the job that the load has started.
struct StartDecodingTest : test::ConversionWorld {
    sonarith::Form6& window = windows.Form6;

    StartDecodingTest() {
        mp3File(source);
        process.currentFile = source;
        window.load();
        window.ActiveMP31->Stop().passOver();
        mp3.log.clear();
        process.currentWavFile = source;
        window.Timer1.setEnabled(false);
        window.Timer2.setEnabled(false);
    }
    ConversionWorker& worker() { return conversion.worker; }
};

TEST_F(StartDecodingTest, DecodesIntoTheFolderOfTheMp3FileAndWaitsForTheEnd) {
    mp3.duration = 1200ms;
    const auto start = loop.now();
    worker().StartDecoding();
    // StartDecoding() checks after each event whether the MP3 control is still busy. The fake MP3
    // control ends its decoding in an event, so the wait ends at exactly that time.
    EXPECT_EQ(loop.now() - start, 1200ms);
    EXPECT_EQ(form.caption(), "Decoding Song\\.mp3");
    EXPECT_EQ(mp3.log[0], setSource);
    EXPECT_EQ(mp3.log[1], "DecodeToWav c:\\mp3\\Song.wav");
    EXPECT_FALSE(window.loaded());
    EXPECT_FALSE(process.workerBusy);
    EXPECT_EQ(loop.wakeupCount(), 0U);
}

TEST_F(StartDecodingTest, StopsTheMp3ControlAndUnloadsTheWindowIfAStopWasRequestedBefore) {
    process.stopRequested = true;
    worker().StartDecoding();
    EXPECT_THAT(mp3.log, ElementsAre("Stop", "Stop"));
    EXPECT_FALSE(window.loaded());
}

TEST_F(StartDecodingTest, DoesNothingForAShortFile) {
    mp3File(source, 99);
    worker().StartDecoding();
    EXPECT_THAT(mp3.log, IsEmpty());
    EXPECT_TRUE(window.loaded());
}

TEST_F(StartDecodingTest, UnloadsTheWindowAndYieldsOnceIfTheDecodingDoesNotStart) {
    mp3.failDecode = Error{ErrorNumber::pathFileAccess, ""};
    const int yields = loop.yieldCount();
    worker().StartDecoding();
    EXPECT_EQ(loop.yieldCount() - yields, 1);
    EXPECT_FALSE(window.loaded());
}

TEST_F(StartDecodingTest, AnUnloadByOtherCodeEndsTheWait) {
    mp3.duration = 10h;
    loop.after(700ms, [this] { window.unload(); });
    const auto start = loop.now();
    worker().StartDecoding();
    EXPECT_EQ(loop.now() - start, 700ms);
}

TEST_F(StartDecodingTest, AJobOfTheNextLoadDoesNotProlongTheWait) {
    mp3.duration = 10h;
    loop.after(700ms, [this] {
        window.unload();
        window.load();
    });
    const auto start = loop.now();
    worker().StartDecoding();
    EXPECT_EQ(loop.now() - start, 700ms);
    EXPECT_TRUE(window.loaded());
    EXPECT_TRUE(mp3.busy());
}

TEST_F(StartDecodingTest, TheEndOfTheProgramEndsTheWait) {
    mp3.duration = 10h;
    loop.after(700ms, [this] { loop.endProgram(); });
    EXPECT_THROW(worker().StartDecoding(), test::ProgramEnded);
    EXPECT_EQ(loop.yieldsAfterEnd(), 0);
}

TEST_F(StartDecodingTest, DecodeCheckedFilesStartsToDecodeTheSameFileForEachSelectedLine) {
    fill(form.List4, {"a", "b", "c"});
    form.List4.setSelected(0, true).passOver();
    form.List4.setSelected(2, true).passOver();
    form.lblStatus.setCaption("x");
    std::vector<int> lines;
    mp3.onCall = [&](const std::string& call) {
        if (call == decodeToWav) {
            lines.push_back(form.List4.listIndex());
        }
    };
    worker().DecodeCheckedFiles();
    EXPECT_THAT(lines, ElementsAre(0, 2));
    EXPECT_EQ(form.lblStatus.caption(), "");
    EXPECT_THAT(pointer.shapes, ElementsAre(Pointer::normal));
    EXPECT_FALSE(window.loaded());
}

TEST_F(StartDecodingTest, DecodeCheckedFilesEndsAtAStopRequest) {
    fill(form.List4, {"a", "b"});
    form.List4.setSelected(0, true).passOver();
    form.List4.setSelected(1, true).passOver();
    mp3.onCall = [&](const std::string&) {
        process.stopRequested = true;
    };
    worker().DecodeCheckedFiles();
    EXPECT_EQ(form.List4.listIndex(), 0);
    // stopRequested is not tested here: DecodeCheckedFiles() clears it, but then unloads the
    // window. The unload calls "Stop", at which onCall sets stopRequested again.
    EXPECT_THAT(mp3.log, ElementsAre(setSource, decodeToWav, "Stop"));
    EXPECT_FALSE(window.loaded());
}

TEST_F(StartDecodingTest, DecodeCheckedFilesClearsAnEarlierStopRequestAndDecodesNothing) {
    fill(form.List4, {"a"});
    form.List4.setSelected(0, true).passOver();
    process.stopRequested = true;
    worker().DecodeCheckedFiles();
    EXPECT_FALSE(process.stopRequested);
    EXPECT_THAT(mp3.log, ElementsAre("Stop"));
}

} // namespace
} // namespace sonarith
