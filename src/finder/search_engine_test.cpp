// SPDX-License-Identifier: GPL-3.0-or-later
#include "finder/search_engine.h"

#include <gmock/gmock.h>

#include <limits>

#include "support/finder_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SearchEngineTest : public testing::Test, protected test::FinderWorld {
  protected:
    std::vector<std::string> found() { return lines(finder.lstfiles); }
};

// --- the first entry of a folder -------------------------------------------------------------

TEST_F(SearchEngineTest, TheFirstEntryOfAFolderIsMatchedByItsExtensionAloneIfItIsAFile) {
    disk.withoutDots("c:\\");
    disk.addFile("c:\\First.WAV");
    disk.addFile("c:\\second.wav");
    finder.Text1.setText("track1");
    search("c:\\", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\first.wav"));
    disk.addFile("c:\\track1.wav");
    search("c:\\", ".mp3");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(SearchEngineTest, TheFirstEntryOfAFolderIsScannedButNotCountedIfItIsAFolder) {
    disk.withoutDots("c:\\");
    disk.addFile("c:\\first\\a.wav");
    disk.addFile("c:\\second\\b.wav");
    search("c:\\", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\second\\b.wav", "c:\\first\\a.wav"));
    EXPECT_EQ(finder.Label1.caption(), "Directories: 1   Files:  2");
}

TEST_F(SearchEngineTest, AFirstEntryWhosePathHasNoDotIsMatchedByThePreviousExtension) {
    disk.withoutDots("c:\\music\\x");
    disk.addFile("c:\\music\\a.wav");
    disk.addFile("c:\\music\\x\\first");
    search("c:\\music", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\music\\a.wav", "c:\\music\\x\\first"));
}

// --- the walk -------------------------------------------------------------------------------

TEST_F(SearchEngineTest, VisitsFoldersDepthFirstStartingWithTheLastFound) {
    disk.addFolder("c:\\m\\A\\a1");
    disk.addFolder("c:\\m\\A\\a2");
    disk.addFolder("c:\\m\\B\\b1");
    disk.addFolder("c:\\m\\C");
    search("c:\\m", ".wav");
    EXPECT_THAT(disk.listed,
                ElementsAre("c:\\m\\*.*", "c:\\m\\c\\*.*", "c:\\m\\b\\*.*", "c:\\m\\b\\b1\\*.*",
                            "c:\\m\\a\\*.*", "c:\\m\\a\\a2\\*.*", "c:\\m\\a\\a1\\*.*"));
    EXPECT_EQ(finder.Label1.caption(), "Directories: 6   Files:  0");
    EXPECT_EQ(disk.walksStarted, 1);
}

TEST_F(SearchEngineTest, ListsAFoldersFilesBeforeThoseOfItsSubfolders) {
    disk.addFile("c:\\m\\x\\inner.wav");
    disk.addFile("c:\\m\\outer.wav");
    search("c:\\m", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\m\\outer.wav", "c:\\m\\x\\inner.wav"));
}

TEST_F(SearchEngineTest, ListsTheStartFolderAsSpelledAndAllOtherFoldersInLowerCase) {
    disk.addFile("c:\\Music\\First\\A.wav");
    disk.addFolder("c:\\Music\\Second");
    search("c:\\Music", ".wav");
    EXPECT_THAT(lines(finder.List1),
                ElementsAre("c:\\Music\\", "c:\\music\\second\\", "c:\\music\\first\\"));
    EXPECT_THAT(found(), ElementsAre("c:\\music\\first\\a.wav"));
    EXPECT_THAT(lines(finder.lstdirs), IsEmpty());
}

TEST_F(SearchEngineTest, AddsNoSecondBackslashToTheRootOfADrive) {
    disk.addFile("c:\\a.wav");
    search("c:\\", ".wav");
    EXPECT_THAT(lines(finder.List1), ElementsAre("c:\\"));
    EXPECT_THAT(found(), ElementsAre("c:\\a.wav"));
}

TEST_F(SearchEngineTest, AnUnreadableFolderAddsNothingAndItsScanEndsAfterOneYield) {
    disk.addFile("c:\\m\\last.wav");
    disk.addFolder("c:\\m\\locked");
    disk.makeUnreadable("c:\\m\\locked");
    search("c:\\m", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\m\\last.wav"));
    // Four yields in c:\m ("..", the file, the folder, the end) and one yield at the end of the
    // locked folder.
    EXPECT_EQ(loop.yieldCount(), 4 + 1);
    EXPECT_THAT(disk.closed, ElementsAre(1, invalidFindHandle));
    EXPECT_EQ(finder.Label1.caption(), "Directories: 1   Files:  1");
}

TEST_F(SearchEngineTest, AHandleOfZeroEndsTheScanOfAFolderAtOnce) {
    disk.addFolder("c:\\m");
    disk.answerZeroFor("c:\\m");
    search("c:\\m", ".wav");
    EXPECT_EQ(loop.yieldCount(), 0);
    EXPECT_THAT(disk.closed, ElementsAre(0));
}

TEST_F(SearchEngineTest, AFolderThatIsDeletedBeforeItsScanAddsNothing) {
    disk.addFile("c:\\m\\gone\\a.wav");
    disk.addFile("c:\\m\\b.wav");
    loop.atYield(3, [this] { disk.removeFolder("c:\\m\\gone"); });
    search("c:\\m", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\m\\b.wav"));
    EXPECT_THAT(disk.listed, ElementsAre("c:\\m\\*.*", "c:\\m\\gone\\*.*"));
}

TEST_F(SearchEngineTest, YieldsAtTheEndOfAFolderAndBeforeEachEntryExceptTheFirst) {
    for (int i = 0; i < 10; ++i) {
        disk.addFile("c:\\m\\" + std::to_string(i) + ".wav");
    }
    std::vector<std::size_t> foundAtYield;
    for (int n = 1; n <= 12; ++n) {
        loop.atYield(n, [&] { foundAtYield.push_back(found().size()); });
    }
    search("c:\\m", ".wav");
    EXPECT_EQ(loop.yieldCount(), 1 + 10 + 1);
    EXPECT_THAT(foundAtYield, ElementsAre(0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
}

TEST_F(SearchEngineTest, EverySearchStartsItsOwnDirectoryWalk) {
    disk.addFile("c:\\m\\a.wav");
    search("c:\\m", ".wav");
    search("c:\\m", ".wav");
    EXPECT_EQ(disk.walksStarted, 2);
    EXPECT_THAT(found(), ElementsAre("c:\\m\\a.wav"));
}

TEST_F(SearchEngineTest, EverySearchReplacesThePreviousResult) {
    disk.addFile("c:\\m\\a.wav");
    ASSERT_TRUE(finder.Dir1.setPath("c:\\m").ok());
    finder.lstfiles.addItem("old");
    engine.SearchFiles();
    EXPECT_THAT(found(), ElementsAre("c:\\m\\a.wav"));
}

TEST_F(SearchEngineTest, AChangeOfTheTypeDuringASearchAppliesFromTheNextEntry) {
    disk.addFile("c:\\m\\a.wav");
    disk.addFile("c:\\m\\b.mp3");
    loop.atYield(3, [this] { finder.zFileExt.setText(".mp3"); });
    search("c:\\m", ".wav");
    EXPECT_THAT(found(), ElementsAre("c:\\m\\a.wav", "c:\\m\\b.mp3"));
}

// --- one folder -----------------------------------------------------------------------------

TEST_F(SearchEngineTest, TheScanOfAFolderTrimsTheCallersPathAndAddsABackslash) {
    disk.addFile("c:\\m\\a.wav");
    const auto walk = disk.startWalk();
    std::string path = "  c:\\m ";
    engine.findfilesapi(*walk, path, "*.*");
    EXPECT_EQ(path, "c:\\m\\");
    EXPECT_THAT(found(), ElementsAre("c:\\m\\a.wav"));
    path = "   ";
    engine.findfilesapi(*walk, path, "*.*");
    EXPECT_EQ(path, "\\");
}

TEST_F(SearchEngineTest, FindfilesdirListsEveryFileAndCountsFolders) {
    disk.addFile("c:\\M\\A.txt");
    disk.addFolder("c:\\M\\X", file_attribute::hidden);
    disk.addFile("c:\\M\\my.b.c", file_attribute::system);
    finder.lstdirs.addItem("c:\\M\\");
    finder.List1.addItem("c:\\M\\");
    const auto walk = disk.startWalk();
    std::string path = "c:\\M";
    engine.findfilesdir(*walk, path, "*.*");
    EXPECT_EQ(path, "c:\\M\\");
    EXPECT_THAT(found(), ElementsAre("c:\\m\\a.txt", "c:\\m\\my.b.c"));
    EXPECT_THAT(lines(finder.lstdirs), ElementsAre("c:\\M\\", "c:\\m\\x\\"));
    EXPECT_THAT(lines(finder.List1), ElementsAre("c:\\M\\", "c:\\m\\x\\"));
    EXPECT_EQ(finder.DirCount, 1);
    EXPECT_EQ(loop.yieldCount(), 5); // ".", "..", and three entries
}

TEST_F(SearchEngineTest, FindfilesdirSkipsDevicesAndMissingFolders) {
    constexpr std::uint32_t device = 64;
    disk.addFile("c:\\m\\printer", device);
    const auto walk = disk.startWalk();
    std::string path = "c:\\m\\";
    engine.findfilesdir(*walk, path, "*.*");
    path = "c:\\none";
    engine.findfilesdir(*walk, path, "*.*");
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_EQ(path, "c:\\none\\");
}

// --- what is shown --------------------------------------------------------------------------

TEST_F(SearchEngineTest, DisablesTheBoxesButNotTheFolderListDuringASearch) {
    disk.addFolder("c:\\m");
    finder.Label1.setCaption("old");
    bool seen = false;
    loop.atYield(1, [&] {
        seen = true;
        EXPECT_FALSE(finder.Drive1.enabled());
        EXPECT_FALSE(finder.Text1.enabled());
        EXPECT_FALSE(finder.zFileExt.enabled());
        EXPECT_TRUE(finder.Dir1.enabled());
        EXPECT_TRUE(finder.Command1.enabled());
        EXPECT_EQ(finder.Label1.caption(), "");
        EXPECT_EQ(finder.lbltime.caption(), "Searching . . . c:\\m\\");
        EXPECT_THAT(lines(finder.lstdirs), ElementsAre("c:\\m\\"));
    });
    search("c:\\m", ".wav");
    EXPECT_TRUE(seen);
}

TEST_F(SearchEngineTest, EnablesAndShowsAllControlsAtTheEnd) {
    disk.addFile("c:\\m\\x\\a.wav");
    finder.lstdirs.setVisible(false);
    search("c:\\m", ".wav");
    EXPECT_TRUE(finder.Drive1.enabled());
    EXPECT_TRUE(finder.Text1.enabled());
    EXPECT_TRUE(finder.zFileExt.enabled());
    EXPECT_TRUE(finder.chkhidelist.visible());
    EXPECT_TRUE(finder.lstdirs.visible());
    EXPECT_TRUE(finder.List1.visible());
    EXPECT_TRUE(finder.lstfiles.visible());
    EXPECT_EQ(finder.Command1.caption(), "Search !");
    EXPECT_EQ(finder.Label1.caption(), "Directories: 1   Files:  1");
    EXPECT_EQ(finder.DirCount, 0);
    EXPECT_EQ(finder.FileCount, 0);
}

TEST_F(SearchEngineTest, CountsNothingInAnEmptyFolder) {
    disk.addFolder("c:\\m");
    search("c:\\m", ".wav");
    EXPECT_EQ(finder.Label1.caption(), "Directories: 0   Files:  0");
}

TEST_F(SearchEngineTest, TheCountOfFoldersStopsAtItsMaximum) {
    disk.addFolder("c:\\m\\a");
    disk.addFolder("c:\\m\\b");
    disk.addFolder("c:\\m\\c");
    finder.DirCount = std::numeric_limits<std::int16_t>::max() - 1;
    search("c:\\m", ".wav");
    EXPECT_EQ(finder.Label1.caption(), "Directories: 32767   Files:  0");
}

TEST_F(SearchEngineTest, TheFileCountStaysZeroIfMoreThan32767FilesAreFound) {
    constexpr int tooMany = std::numeric_limits<std::int16_t>::max() + 1;
    for (int i = 0; i < tooMany; ++i) {
        disk.addFile("c:\\m\\" + std::to_string(i) + ".wav");
    }
    search("c:\\m", ".wav");
    EXPECT_EQ(finder.lstfiles.listCount(), tooMany);
    EXPECT_EQ(finder.Label1.caption(), "Directories: 0   Files:  0");
    finder.Text1.setText("7");
    search("c:\\m", ".wav");
    EXPECT_EQ(finder.Label1.caption(), "Directories: 0   Files:  1");
}

struct Times {
    double startSeconds;
    double endSeconds;
    std::string text;
};

class SearchTimeTest : public testing::TestWithParam<Times>, protected test::FinderWorld {};

TEST_P(SearchTimeTest, IsShownInSecondsWithAtMostSevenSignificantDigits) {
    disk.addFolder("c:\\m");
    loop.setSecondsSinceMidnight(GetParam().startSeconds);
    loop.atYield(1, [this] { loop.setSecondsSinceMidnight(GetParam().endSeconds); });
    search("c:\\m", ".wav");
    EXPECT_EQ(finder.lbltime.caption(), "Time taken: " + GetParam().text + " second(s)");
}

INSTANTIATE_TEST_SUITE_P(Times, SearchTimeTest,
                         testing::Values(Times{100, 100, "0"}, Times{100, 100.25, "0.25"},
                                         Times{43200.1, 43200.123, "0.023"},
                                         Times{100, 112.5, "12.5"}, Times{0, 3600, "3600"},
                                         Times{1, 40001.0625, "40000.06"}, Times{0, 0.001, "0.001"},
                                         // A search that ran past midnight shows a negative time.
                                         Times{86399.5, 2.25, "-86397.25"}));

} // namespace
} // namespace sonarith
