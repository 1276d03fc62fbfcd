// SPDX-License-Identifier: GPL-3.0-or-later
#include "finder/finder_scanner.h"

#include <gmock/gmock.h>

#include "support/finder_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FinderScannerTest : public testing::Test, protected test::FinderWorld {
  protected:
    FinderScannerTest() {
        disk.addFile("c:\\Music\\a.wav");
        disk.addFile("c:\\Music\\b.MP3");
        disk.addFile("c:\\Music\\sub\\c.wav");
        windows.frmsearch.unload();
    }
};

TEST_F(FinderScannerTest, LoadsTheWindowAtTheFirstUseWithoutShowingIt) {
    EXPECT_TRUE(scanner.setFolder("c:\\Music").ok());
    EXPECT_TRUE(windows.frmsearch.loaded());
    EXPECT_FALSE(windows.frmsearch.visible());
}

TEST_F(FinderScannerTest, AcceptsAFileTypeWithoutItsDot) {
    EXPECT_TRUE(scanner.setFolder("c:\\Music").ok());
    scanner.search("wav");
    EXPECT_THAT(lines(scanner.lstfiles()),
                ElementsAre("c:\\music\\a.wav", "c:\\music\\sub\\c.wav"));
    scanner.search("mp3");
    EXPECT_THAT(lines(scanner.lstfiles()), ElementsAre("c:\\music\\b.mp3"));
    EXPECT_EQ(finder.zFileExt.text(), ".mp3");
}

TEST_F(FinderScannerTest, SettingAMissingFolderFailsAndTheNextSearchUsesThePreviousFolder) {
    EXPECT_TRUE(scanner.setFolder("c:\\Music").ok());
    const Status status = scanner.setFolder("c:\\none");
    ASSERT_FALSE(status.ok());
    EXPECT_EQ(status.error().number, ErrorNumber::pathNotFound);
    scanner.search("mp3");
    EXPECT_THAT(lines(scanner.lstfiles()), ElementsAre("c:\\music\\b.mp3"));
}

TEST_F(FinderScannerTest, SearchesTheProgramsFolderIfNoFolderWasSet) {
    disk.addFile("c:\\sonarith\\own.wav");
    EXPECT_FALSE(scanner.setFolder("c:\\none").ok());
    scanner.search("wav");
    EXPECT_THAT(lines(scanner.lstfiles()), ElementsAre("c:\\sonarith\\own.wav"));
}

TEST_F(FinderScannerTest, ANameInTheFindersBoxLimitsTheSearch) {
    EXPECT_TRUE(scanner.setFolder("c:\\Music").ok());
    finder.Text1.setText("c");
    scanner.search("wav");
    EXPECT_THAT(lines(scanner.lstfiles()), ElementsAre("c:\\music\\sub\\c.wav"));
}

TEST_F(FinderScannerTest, ASecondSearchOnlyStopsTheRunningSearch) {
    EXPECT_TRUE(scanner.setFolder("c:\\Music").ok());
    loop.atYield(1, [this] { scanner.search("mp3"); });
    scanner.search("wav");
    // After the stop, the rest of the current folder is searched for the file type that zFileExt
    // now contains: "mp3" without a dot, which matches no file.
    EXPECT_EQ(finder.Command1.caption(), "Search !");
    EXPECT_THAT(lines(scanner.lstfiles()), IsEmpty());
    EXPECT_THAT(disk.listed, ElementsAre("c:\\Music\\*.*"));
}

TEST_F(FinderScannerTest, ARefreshOfTheTreeFillsTheListsOfWavAndMp3Files) {
    process.settings.decodePath = "c:\\Music";
    process.settings.showFullPath = 1;
    tree.showfiles();
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\sub\\c.wav", "c:\\music\\a.wav"));
    EXPECT_THAT(lines(form.List2), ElementsAre("c:\\music\\b.mp3"));
}

TEST_F(FinderScannerTest, ARefreshOfTheTreeAtAnyYieldOfAnotherRefreshLeavesNoSearchRunning) {
    process.settings.decodePath = "c:\\Music";
    tree.showfiles();
    const int yields = loop.yieldCount();
    for (int n = 1; n <= yields; ++n) {
        SCOPED_TRACE(n);
        loop.atYield(n, [this] { tree.showfiles(); });
        tree.showfiles();
        EXPECT_EQ(finder.Command1.caption(), "Search !");
        EXPECT_EQ(finder.lstdirs.listCount(), 0);
    }
}

} // namespace
} // namespace sonarith
