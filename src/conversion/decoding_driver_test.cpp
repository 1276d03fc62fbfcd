// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/decoding_driver.h"

#include "support/conversion_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::ShownBox;
using testing::ElementsAre;
using testing::IsEmpty;

struct DriverTest : test::ConversionWorld {
    /// For each file, the captions of the window, of Label3 and of Label2 when the MP3 control is
    /// first started for this file. At this start, Form6.Timer1 is still enabled. Later the timer
    /// disables itself and starts the control again.
    std::vector<std::string> shown;

    DriverTest() {
        mp3File("c:\\mp3\\A.mp3");
        mp3File("c:\\mp3\\b.mp3");
        mp3.onCall = [this](const std::string& call) {
            if (call.starts_with("DecodeToWav") && Form6.Timer1.enabled()) {
                shown.push_back(form.caption() + " | " + form.Label3.caption() + " | " +
                                form.Label2.caption());
            }
        };
    }
    void expectFinished() const {
        EXPECT_TRUE(process.stopRequested);
        EXPECT_TRUE(form.Timer1.enabled());
        EXPECT_FALSE(form.Command2.visible());
        EXPECT_FALSE(process.workerBusy);
        EXPECT_FALSE(windows.Form6.loaded());
    }
};

// --- case A: all files -------------------------------------------------------------------------

TEST_F(DriverTest, AllFilesAreDecodedOneAfterTheOther) {
    fill(form.List2, {"c:\\mp3\\A.mp3", "c:\\mp3\\b.mp3"});
    decode("MP3 Files");
    EXPECT_THAT(shown, ElementsAre("Decoding a.mp3 | Decoding #1 of 2 files | c:\\music\\a.wav",
                                   "Decoding b.mp3 | Decoding #2 of 2 files | c:\\music\\b.wav"));
    EXPECT_THAT(mp3.finished, ElementsAre("c:\\music\\a.wav", "c:\\music\\b.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\b.wav", "c:\\music\\a.wav"));
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre("c:\\music\\a.wav", "c:\\music\\b.wav"));
    EXPECT_EQ(process.currentWavFile, "c:\\music\\b.wav");
    EXPECT_EQ(process.currentFile, "c:\\mp3\\b.mp3");
    EXPECT_EQ(process.fileIndex, 2);
    EXPECT_EQ(form.lblStatus.caption(), "");
    expectFinished();
}

TEST_F(DriverTest, AnEmptyListOfAllFilesShowsAMessageAndStartsNothing) {
    form.Timer1.setEnabled(false);
    decode("MP3 Files");
    EXPECT_THAT(boxes.shown, ElementsAre(ShownBox{"No files in list.", BoxIcon::information}));
    EXPECT_FALSE(process.stopRequested);
    EXPECT_FALSE(form.Timer1.enabled());
    EXPECT_TRUE(form.mnuFile.enabled());
}

TEST_F(DriverTest, OnlyTheDecodingOfAllFilesYieldsBeforeTheFirstFile) {
    fill(form.List2, {"c:\\mp3\\b.mp3"});
    fill(form.List4, {"c:\\mp3\\b.mp3"});
    for (const auto& [group, yields] :
         {std::pair("MP3 Files", 1), std::pair("Selected MP3 Files", 0)}) {
        process.stopRequested = false;
        int before = -1;
        const int start = loop.yieldCount();
        mp3.onCall = [&](const std::string&) {
            before = before < 0 ? loop.yieldCount() - start : before;
        };
        decode(group);
        EXPECT_EQ(before, yields) << group;
    }
}

TEST_F(DriverTest, TheFileMenuIsDisabledAndCancelIsVisibleDuringADecoding) {
    fill(form.List2, {"c:\\mp3\\b.mp3"});
    windows.frmsearch.load();
    bool seen = false;
    mp3.onCall = [&](const std::string& call) {
        if (!seen && call.starts_with("SourceFile")) {
            seen = true;
            EXPECT_TRUE(form.Command2.visible());
            EXPECT_FALSE(form.mnuFile.enabled());
            EXPECT_FALSE(windows.frmsearch.loaded());
            EXPECT_TRUE(process.workerBusy);
        }
    };
    decode("MP3 Files");
    EXPECT_TRUE(seen);
    EXPECT_FALSE(form.Command2.visible());
    // The buttons and menus are enabled again by ActionStarter, which starts a decoding in the
    // program but not in this test.
    EXPECT_FALSE(form.mnuFile.enabled());
}

TEST_F(DriverTest, AFileThatIsAddedDuringTheDecodingIsCountedInTheDisplayButNotDecoded) {
    fill(form.List2, {"c:\\mp3\\b.mp3", "c:\\mp3\\A.mp3"});
    loop.after(700ms, [this] { form.List2.addItem("c:\\mp3\\c.mp3"); });
    decode("MP3 Files");
    ASSERT_EQ(shown.size(), 2U);
    EXPECT_EQ(shown[1], "Decoding a.mp3 | Decoding #2 of 3 files | c:\\music\\a.wav");
}

TEST_F(DriverTest, TheWorkerOfAnEarlierDecodingIsUnloadedBeforeTheNextDecoding) {
    process.currentFile = "c:\\mp3\\A.mp3";
    mp3.duration = 10s;
    windows.Form6.load();
    mp3.duration = 1s;
    mp3.log.clear();
    fill(form.List2, {"c:\\mp3\\b.mp3"});
    decode("MP3 Files");
    EXPECT_EQ(mp3.log.front(), "Stop");
    EXPECT_THAT(mp3.finished, ElementsAre("c:\\music\\b.wav"));
    expectFinished();
}

TEST_F(DriverTest, FilesWithTheSameNameShareOneWav) {
    mp3File("d:\\other\\b.mp3");
    fill(form.List2, {"c:\\mp3\\b.mp3", "d:\\other\\b.mp3"});
    decode("MP3 Files");
    EXPECT_THAT(mp3.finished, ElementsAre("c:\\music\\b.wav", "c:\\music\\b.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\b.wav"));
}

// --- case B: the selected files ----------------------------------------------------------------

TEST_F(DriverTest, TheSelectedFilesAreDecodedUnderTheirUnchangedNames) {
    fill(form.List4, {"c:\\mp3\\A.mp3", "c:\\mp3\\b.mp3"});
    decode("Selected MP3 Files");
    EXPECT_THAT(shown, ElementsAre("Decoding A.mp3 | Decoding #1 of 2 files | c:\\music\\A.wav",
                                   "Decoding b.mp3 | Decoding #2 of 2 files | c:\\music\\b.wav"));
    EXPECT_THAT(mp3.finished, ElementsAre("c:\\music\\A.wav", "c:\\music\\b.wav"));
    EXPECT_EQ(form.lblStatus.caption(), "4000 bytes");
    expectFinished();
}

TEST_F(DriverTest, AnEmptyListOfSelectedFilesShowsAMessageAndStartsNothing) {
    decode("Selected MP3 Files");
    EXPECT_THAT(boxes.shown, ElementsAre(ShownBox{"No files selected", BoxIcon::information}));
    EXPECT_FALSE(process.stopRequested);
    EXPECT_FALSE(form.Timer1.enabled());
}

TEST_F(DriverTest, AStopBeforeTheFirstSelectedFileShowsTheLengthOfAnEarlierFile) {
    fill(form.List4, {"c:\\mp3\\b.mp3"});
    process.stopRequested = true;
    form.lblStatus.setCaption("as before");
    decode("Selected MP3 Files");
    EXPECT_EQ(form.lblStatus.caption(), "as before");
    disk.addFile("c:\\music\\earlier.wav", std::string(123, 'w'));
    process.currentWavFile = "c:\\music\\earlier.wav";
    decode("Selected MP3 Files");
    EXPECT_EQ(form.lblStatus.caption(), "123 bytes");
    EXPECT_THAT(mp3.log, IsEmpty());
    EXPECT_TRUE(form.Timer1.enabled());
}

// --- case C: one file --------------------------------------------------------------------------

TEST_F(DriverTest, ASingleFileIsFoundByItsNameWithoutAPath) {
    process.settings.showFullPath = 0;
    fill(form.List2, {"c:\\mp3\\A.mp3", "c:\\mp3\\B.mp3"});
    decode("b.mp3");
    EXPECT_THAT(shown, ElementsAre("Decoding b.mp3 | Decoding  b.mp3 | c:\\music\\b.wav"));
    EXPECT_EQ(mp3.log.front(), "SourceFile c:\\mp3\\b.mp3");
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\b.wav"));
    expectFinished();
}

TEST_F(DriverTest, ASingleFileIsFoundByItsFullPathInEitherList) {
    fill(form.List2, {"c:\\mp3\\x.mp3", "c:\\mp3\\b.mp3"});
    decode("c:\\mp3\\b.mp3");
    EXPECT_EQ(mp3.log.front(), "SourceFile c:\\mp3\\b.mp3");
    EXPECT_EQ(shown.front(), "Decoding b.mp3 | Decoding  c:\\mp3\\b.mp3 | c:\\music\\b.wav");
    fill(form.List4, {"c:\\mp3\\x.mp3", "c:\\mp3\\b.mp3"});
    fill(form.List2, {"c:\\mp3\\y.mp3"});
    mp3.log.clear();
    process.stopRequested = false;
    decode("c:\\mp3\\b.mp3");
    EXPECT_EQ(mp3.log.front(), "SourceFile c:\\mp3\\b.mp3");
}

TEST_F(DriverTest, ANameFoundInList4DecodesTheLineOfList2AtTheSameIndex) {
    fill(form.List2, {"c:\\mp3\\x.mp3", "c:\\mp3\\A.mp3"});
    fill(form.List4, {"c:\\mp3\\y.mp3", "c:\\mp3\\b.mp3"});
    decode("b.mp3");
    EXPECT_EQ(process.fileIndex, 1);
    EXPECT_EQ(mp3.log.front(), "SourceFile c:\\mp3\\a.mp3");
    // The window's caption and the WAV file have the name of the decoded file. The labels show
    // the node's text and a WAV file named after it. The driver tries to add the file b.wav to
    // List1, but this file does not exist.
    EXPECT_EQ(shown.front(), "Decoding a.mp3 | Decoding  b.mp3 | c:\\music\\b.wav");
    EXPECT_THAT(mp3.finished, ElementsAre("c:\\music\\a.wav"));
    EXPECT_THAT(lines(form.List1), IsEmpty());
}

TEST_F(DriverTest, WaitsUntilTheProgramEndsIfTheIndexInList4IsBeyondList2) {
    fill(form.List4, {"c:\\mp3\\b.mp3"});
    loop.after(1h, [this] {
        EXPECT_EQ(process.currentFile, "");
        EXPECT_TRUE(process.workerBusy);
        loop.endProgram();
    });
    EXPECT_THROW(decode("b.mp3"), test::ProgramEnded);
}

TEST_F(DriverTest, ANameWithCapitalsDecodesTheLineOfList2AtTheIndexWhereTheSearchOfList4Ended) {
    // A name with capitals matches no line. The last list that is searched is List4. It is empty,
    // so its search ends at index 0, and line 0 of List2 is decoded.
    fill(form.List2, {"c:\\mp3\\b.mp3", "c:\\mp3\\A.mp3"});
    decode("A.mp3");
    EXPECT_EQ(mp3.log.front(), "SourceFile c:\\mp3\\b.mp3");
    // With one line in List4, its search ends at index 1, and line 1 of List2 is decoded.
    fill(form.List4, {"c:\\mp3\\z.mp3"});
    process.stopRequested = false;
    mp3.log.clear();
    decode("A.mp3");
    EXPECT_EQ(mp3.log.front(), "SourceFile c:\\mp3\\a.mp3");
}

TEST_F(DriverTest, TheFirstLineWithTheNameIsUsed) {
    mp3File("d:\\b.mp3");
    fill(form.List2, {"d:\\b.mp3", "c:\\mp3\\b.mp3"});
    decode("b.mp3");
    EXPECT_EQ(mp3.log.front(), "SourceFile d:\\b.mp3");
}

TEST_F(DriverTest, IfNoMp3NodeIsSelectedAStopIsRequestedWithoutAMessage) {
    // An ending in capitals is not recognized, so "a.MP3" is no MP3 node.
    for (const char* text : {"c:\\music\\a.wav", "WAV Files", "a.MP3", "CD Tracks"}) {
        process.stopRequested = false;
        form.Timer1.setEnabled(false);
        decode(text);
        EXPECT_TRUE(process.stopRequested) << text;
        EXPECT_FALSE(form.Timer1.enabled()) << text;
    }
    view.clear();
    process.stopRequested = false;
    form.CmdDecoder.click();
    EXPECT_TRUE(process.stopRequested);
    EXPECT_THAT(mp3.log, IsEmpty());
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(DriverTest, ASingleFileIsNotDecodedIfAStopIsRequested) {
    fill(form.List2, {"c:\\mp3\\b.mp3"});
    process.stopRequested = true;
    decode("b.mp3");
    EXPECT_THAT(mp3.log, ElementsAre("Stop"));
    expectFinished();
}

// --- files that cannot be decoded --------------------------------------------------------------

TEST_F(DriverTest, ForAMissingFileCancelStaysHiddenAndTheDriverWaitsUntilTheProgramEnds) {
    fill(form.List2, {"c:\\mp3\\gone.mp3"});
    loop.after(1h, [this] {
        EXPECT_TRUE(process.workerBusy);
        EXPECT_FALSE(form.Command2.visible());
        EXPECT_FALSE(windows.Form6.loaded());
        // Form6 is not loaded, so unloading it does not end the wait.
        process.stopRequested = true;
        windows.Form6.unload();
    });
    loop.after(2h, [this] { loop.endProgram(); });
    const auto start = loop.now();
    EXPECT_THROW(decode("MP3 Files"), test::ProgramEnded);
    EXPECT_EQ(loop.now() - start, 2h);
    EXPECT_EQ(loop.yieldsAfterEnd(), 0);
}

// `workerBusy` is set before Disablem() unloads the earlier worker; this unload clears the flag, so
// the driver does not wait.
TEST_F(DriverTest, ForAMissingFileTheDriverDoesNotWaitIfAnEarlierWorkerIsStillLoaded) {
    process.currentFile = "c:\\mp3\\A.mp3";
    mp3.duration = 10s;
    windows.Form6.load();
    fill(form.List2, {"c:\\mp3\\gone.mp3"});
    loop.after(2h, [this] { loop.endProgram(); });
    decode("MP3 Files");
    EXPECT_FALSE(process.workerBusy);
    EXPECT_FALSE(windows.Form6.loaded());
}

TEST_F(DriverTest, AShortFileCausesAWaitUntilOtherCodeUnloadsTheWorker) {
    mp3File("c:\\mp3\\short.mp3", 99);
    fill(form.List2, {"c:\\mp3\\short.mp3", "c:\\mp3\\b.mp3"});
    loop.after(1h, [this] {
        EXPECT_TRUE(process.workerBusy);
        windows.Form6.unload();
    });
    const auto start = loop.now();
    decode("MP3 Files");
    EXPECT_GT(loop.now() - start, 1h);
    EXPECT_THAT(mp3.finished, ElementsAre("c:\\music\\b.wav"));
    expectFinished();
}

TEST_F(DriverTest, AfterTheListIsClearedDuringADecodingTheDriverWaitsAsForAMissingFile) {
    fill(form.List2, {"c:\\mp3\\b.mp3", "c:\\mp3\\A.mp3"});
    loop.after(700ms, [this] { form.List2.clear(); });
    loop.after(1h, [this] { loop.endProgram(); });
    EXPECT_THROW(decode("MP3 Files"), test::ProgramEnded);
    EXPECT_EQ(process.currentFile, "");
    // The empty name has no base name, so the caption and Label2 keep the texts of the previous
    // file.
    EXPECT_EQ(form.caption(), "Decoding b.mp3");
    EXPECT_EQ(form.Label2.caption(), "c:\\music\\b.wav");
    EXPECT_EQ(form.Label3.caption(), "Decoding #2 of 0 files");
}

TEST_F(DriverTest, AWavBelowAHundredBytesIsNotAddedToTheList) {
    mp3.wholeBytes = 99;
    fill(form.List2, {"c:\\mp3\\b.mp3"});
    decode("MP3 Files");
    EXPECT_THAT(lines(form.List1), IsEmpty());
    EXPECT_EQ(process.currentWavFile, "c:\\music\\b.wav");
}

// --- StartDecoding -----------------------------------------------------------------------------

TEST_F(DriverTest, StartDecodingWithAnExistingFileLoadsTheWorkerWhichDecodesTheCurrentFile) {
    process.currentFile = "c:\\mp3\\b.mp3";
    driver.StartDecoding("c:\\mp3\\A.mp3");
    EXPECT_TRUE(form.Command2.visible());
    EXPECT_TRUE(process.workerBusy);
    EXPECT_TRUE(windows.Form6.loaded());
    EXPECT_EQ(mp3.log.front(), "SourceFile c:\\mp3\\b.mp3");
}

TEST_F(DriverTest, StartDecodingDoesNothingForAMissingFile) {
    driver.StartDecoding("c:\\mp3\\gone.mp3");
    EXPECT_FALSE(form.Command2.visible());
    EXPECT_FALSE(process.workerBusy);
    EXPECT_FALSE(windows.Form6.loaded());
}

// --- a second action inside the first ----------------------------------------------------------

TEST_F(DriverTest, ASecondDecodingInsideTheFirstStopsTheFirstAndBothEndTogether) {
    fill(form.List2, {"c:\\mp3\\b.mp3", "c:\\mp3\\A.mp3"});
    fill(form.List4, {"c:\\mp3\\A.mp3"});
    mp3.duration = 5s;
    loop.after(1200ms, [this] {
        process.stopRequested = false;
        decode("Selected MP3 Files");
    });
    decode("MP3 Files");
    EXPECT_THAT(mp3.finished, ElementsAre("c:\\music\\A.wav"));
    EXPECT_EQ(disk.content("c:\\music\\b.wav")->size(), mp3.partialBytes);
    expectFinished();
}

} // namespace
} // namespace sonarith
