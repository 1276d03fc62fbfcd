// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/frm_search.h"

#include <gmock/gmock.h>

#include <limits>

#include "support/fake_directories.h"
#include "support/fake_file_system.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

class FrmSearchTest : public testing::Test {
  protected:
    test::FakeFileSystem files;
    test::FakeDirectories disk;
    FrmSearch finder{files, disk};
};

TEST_F(FrmSearchTest, StartsWithTheDesignedTexts) {
    EXPECT_EQ(finder.zFileExt.text(), ".wav");
    EXPECT_EQ(finder.zFileExt.typingLimit(), 4);
    EXPECT_EQ(finder.Text1.text(), "");
    EXPECT_EQ(finder.Text1.typingLimit(), 100);
    EXPECT_EQ(finder.Command1.caption(), "Search !");
    EXPECT_EQ(finder.cmdend.caption(), "Close");
    EXPECT_EQ(finder.chkhidelist.caption(), "Hide lists when searching");
    EXPECT_EQ(finder.chkhidelist.value(), 0);
    EXPECT_EQ(finder.lbltime.caption(), "Time taken: 0 second(s)");
    EXPECT_EQ(finder.Label1.caption(), "");
    EXPECT_EQ(finder.Label2.caption(), "Right-click on a file name for pop-up menu options");
    EXPECT_EQ(finder.lstfiles.listCount(), 0);
}

TEST_F(FrmSearchTest, StartsInTheProgramFolderWhateverTheCurrentFolderIs) {
    files.addFolder("d:\\elsewhere");
    ASSERT_TRUE(files.changeFolder("d:\\elsewhere").ok());
    finder.load();
    EXPECT_EQ(finder.Dir1.path(), "c:\\sonarith");
    EXPECT_EQ(finder.Drive1.drive(), "c:");
}

TEST_F(FrmSearchTest, ThePopupMenuHasFourEntriesAndIsNotInTheMenuBar) {
    EXPECT_FALSE(finder.mnupopup.visible());
    std::vector<std::string> captions;
    for (const MenuItem* entry : finder.mnupopup.entries()) {
        captions.push_back(entry->caption());
    }
    EXPECT_THAT(captions, ElementsAre("Select for Conversion", "Remove File from list",
                                      "Delete File", "Close Window"));
}

TEST_F(FrmSearchTest, TouchingTheWindowTwiceLoadsItOnceWithoutShowingIt) {
    int loads = 0;
    finder.onLoad = [&] {
        ++loads;
    };
    finder.touch();
    finder.touch();
    EXPECT_TRUE(finder.loaded());
    EXPECT_FALSE(finder.visible());
    EXPECT_EQ(loads, 1);
}

TEST_F(FrmSearchTest, TheSummaryResetsTheCounters) {
    finder.lstfiles.addItem("a");
    finder.DirCount = 12;
    countFiles(finder);
    EXPECT_EQ(finder.FileCount, 1);
    showSummary(finder);
    EXPECT_EQ(finder.Label1.caption(), "Directories: 12   Files:  1");
    EXPECT_EQ(finder.DirCount, 0);
    EXPECT_EQ(finder.FileCount, 0);
}

TEST_F(FrmSearchTest, ACountOfFilesAboveTheMaximumDoesNotChangeTheCounter) {
    constexpr int highest = std::numeric_limits<std::int16_t>::max();
    for (int i = 0; i < highest; ++i) {
        finder.lstfiles.addItem("a");
    }
    countFiles(finder);
    EXPECT_EQ(finder.FileCount, highest);
    finder.lstfiles.addItem("a");
    finder.FileCount = 5;
    countFiles(finder);
    EXPECT_EQ(finder.FileCount, 5);
}

} // namespace
} // namespace sonarith
