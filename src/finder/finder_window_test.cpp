// SPDX-License-Identifier: GPL-3.0-or-later
#include "finder/finder_window.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "support/finder_world.h"
#include "support/must_run.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class FinderWindowTest : public testing::Test, protected test::FinderWorld {};

// --- the button -----------------------------------------------------------------------------

TEST_F(FinderWindowTest, AClickOnTheSearchButtonStartsASearchAndClearsThePreviousResult) {
    disk.addFolder("c:\\m");
    finder.lstfiles.addItem("old");
    finder.lstdirs.addItem("old");
    finder.List1.addItem("old");
    bool seen = false;
    loop.atYield(1, [&] {
        seen = true;
        EXPECT_EQ(finder.Command1.caption(), "Stop!");
        EXPECT_FALSE(finder.chkhidelist.visible());
        EXPECT_THAT(lines(finder.List1), ElementsAre("c:\\m\\"));
        EXPECT_THAT(lines(finder.lstdirs), ElementsAre("c:\\m\\"));
        EXPECT_THAT(lines(finder.lstfiles), IsEmpty());
        EXPECT_TRUE(finder.List1.visible());
        EXPECT_TRUE(finder.lstfiles.visible());
    });
    search("c:\\m", ".wav");
    EXPECT_TRUE(seen);
}

TEST_F(FinderWindowTest, TheSearchButtonIsDisabledWhileItsCaptionChangesToStop) {
    disk.addFolder("c:\\m");
    std::vector<std::string> states;
    const Connection watch = finder.Command1.changed.connect([&](Property) {
        states.push_back(finder.Command1.caption() +
                         (finder.Command1.enabled() ? "" : " disabled"));
    });
    search("c:\\m", ".wav");
    EXPECT_THAT(states, ElementsAre("Continue", "Continue disabled", "Stop! disabled", "Stop!",
                                    "Search !"));
}

TEST_F(FinderWindowTest, ASearchHidesTwoListsIfTheHideListsBoxIsTicked) {
    disk.addFolder("c:\\m");
    finder.chkhidelist.setValue(1).passOver();
    bool seen = false;
    loop.atYield(1, [&] {
        seen = true;
        EXPECT_FALSE(finder.List1.visible());
        EXPECT_FALSE(finder.lstfiles.visible());
        EXPECT_TRUE(finder.lstdirs.visible());
    });
    search("c:\\m", ".wav");
    EXPECT_TRUE(seen);
    EXPECT_TRUE(finder.List1.visible());
    EXPECT_TRUE(finder.lstfiles.visible());
}

TEST_F(FinderWindowTest, AClickOnTheSearchButtonDoesNothingIfItsCaptionIsUnknown) {
    disk.addFolder("c:\\m");
    finder.Command1.setCaption("Search");
    finder.lstfiles.addItem("kept");
    finder.Command1.click();
    EXPECT_EQ(loop.yieldCount(), 0);
    EXPECT_THAT(lines(finder.lstfiles), ElementsAre("kept"));
}

TEST_F(FinderWindowTest, ASearchKeepsTheFoundFoldersIfTheButtonsCaptionIsContinue) {
    disk.addFolder("c:\\m");
    EXPECT_TRUE(finder.Dir1.setPath("c:\\m").ok());
    finder.List1.addItem("kept");
    finder.Command1.setCaption("Continue");
    finder.Command1.click();
    EXPECT_THAT(lines(finder.List1), ElementsAre("kept", "c:\\m\\"));
}

TEST_F(FinderWindowTest, AStopWithMoreThan32767ListedFilesLeavesTheFileCountAtZero) {
    constexpr int tooMany = std::numeric_limits<std::int16_t>::max() + 1;
    for (int i = 0; i < tooMany; ++i) {
        finder.lstfiles.addItem("c:\\" + std::to_string(i) + ".wav");
    }
    finder.DirCount = 7;
    finder.Command1.setCaption("Stop!");
    finder.Command1.click();
    EXPECT_EQ(finder.Label1.caption(), "Directories: 7   Files:  0");
    EXPECT_EQ(finder.lstfiles.listCount(), tooMany);
}

// --- boxes and labels -----------------------------------------------------------------------

TEST_F(FinderWindowTest, TheExtensionIsAlwaysShownInLowerCase) {
    finder.zFileExt.setText(".MP3");
    EXPECT_EQ(finder.zFileExt.text(), ".mp3");
}

TEST_F(FinderWindowTest, ASearchCaptionOfMoreThan200CharactersIsReplacedByTheFolderAndAnEllipsis) {
    const std::string folder = "c:\\" + std::string(186, 'm');
    const std::string shown = folder + "\\";
    ASSERT_THAT(shown, SizeIs(190));
    disk.addFolder(folder);
    std::string caption;
    loop.atYield(1, [&] { caption = finder.lbltime.caption(); });
    search(folder, ".wav");
    EXPECT_EQ(caption, shown + "...");
}

TEST_F(FinderWindowTest, ACaptionOf200CharactersIsKept) {
    const std::string prefix = "Searching . . . ";
    // The limit of 200 counts characters, not bytes; each of these characters has two bytes.
    std::string name;
    for (std::size_t i = 0; i < 200 - prefix.size() - 4; ++i) {
        name += "\xc3\xa4";
    }
    disk.addFolder("c:\\" + name);
    std::string caption;
    loop.atYield(1, [&] { caption = finder.lbltime.caption(); });
    search("c:\\" + name, ".wav");
    EXPECT_EQ(caption, prefix + "c:\\" + name + "\\");
}

TEST_F(FinderWindowTest, AFolderOfMoreThan200CharactersIsShownWholeWithAnEllipsisAfterIt) {
    finder.lstdirs.addItem(std::string(300, 'x'));
    finder.lbltime.setCaption(std::string(400, 'y'));
    EXPECT_EQ(finder.lbltime.caption(), std::string(300, 'x') + "...");
}

TEST_F(FinderWindowTest, ALongCaptionBecomesAnEllipsisIfNoFolderIsLeftToScan) {
    finder.lbltime.setCaption(std::string(201, 'y'));
    EXPECT_EQ(finder.lbltime.caption(), "...");
}

TEST_F(FinderWindowTest, DriveAndFolderFollowEachOther) {
    disk.addFolder("c:\\music");
    disk.addFolder("d:\\albums\\one");
    EXPECT_TRUE(finder.Dir1.setPath("d:\\albums").ok());
    EXPECT_EQ(finder.Drive1.drive(), "d:");
    EXPECT_EQ(finder.Dir1.path(), "d:\\albums");
    EXPECT_TRUE(finder.Dir1.setPath("c:\\music").ok());
    EXPECT_TRUE(finder.Drive1.setDrive("d:").ok());
    EXPECT_EQ(finder.Dir1.path(), "d:\\albums");
    EXPECT_TRUE(finder.Drive1.setDrive("c:").ok());
    EXPECT_EQ(finder.Dir1.path(), "c:\\music");
}

TEST_F(FinderWindowTest, DriveAndFolderUpdateEachOtherOnlyOnce) {
    disk.addFolder("d:\\albums");
    std::vector<std::string> moves;
    const Connection drives =
        finder.Drive1.changed.connect([&](Property) { moves.push_back(finder.Drive1.drive()); });
    const Connection folders =
        finder.Dir1.changed.connect([&](Property) { moves.push_back(finder.Dir1.path()); });
    EXPECT_TRUE(finder.Drive1.setDrive("d:").ok());
    EXPECT_THAT(moves, ElementsAre("d:", "d:\\"));
    moves.clear();
    disk.addFolder("c:\\music");
    EXPECT_TRUE(finder.Dir1.setPath("C:\\MUSIC").ok());
    EXPECT_THAT(moves, ElementsAre("C:\\MUSIC", "c:"));
}

TEST_F(FinderWindowTest, ChoosingADriveThatCannotBeEnteredChangesNeitherDriveNorFolder) {
    disk.addFolder("c:\\music");
    disk.addFolder("d:\\albums");
    disk.removeFolder("d:\\");
    EXPECT_TRUE(finder.Dir1.setPath("c:\\music").ok());
    // The current folder can no longer be entered either; Dir1 must keep it nevertheless.
    disk.removeFolder("c:\\music");
    EXPECT_TRUE(finder.Drive1.setDrive("d:").ok());
    EXPECT_EQ(finder.Drive1.drive(), "c:");
    EXPECT_EQ(finder.Dir1.path(), "c:\\music");
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(FinderWindowTest, IfNoDriveCanBeEnteredTheFolderDoesNotChange) {
    disk.addFolder("d:\\albums");
    disk.removeFolder("d:\\");
    EXPECT_TRUE(finder.Drive1.setDrive("d:").ok());
    disk.removeFolder("c:\\sonarith");
    disk.removeFolder("c:\\");
    EXPECT_TRUE(finder.Drive1.setDrive("d:").ok());
    EXPECT_EQ(finder.Dir1.path(), "c:\\sonarith");
}

TEST_F(FinderWindowTest, DuringASearchTheFolderListStaysEnabledAndTheDriveFollowsTheFolder) {
    disk.addFile("c:\\m\\a.wav");
    disk.addFolder("d:\\albums");
    loop.atYield(1, test::mustRun([this] {
                     EXPECT_FALSE(finder.Drive1.enabled());
                     EXPECT_TRUE(finder.Dir1.enabled());
                     EXPECT_TRUE(finder.Dir1.setPath("d:\\albums").ok());
                     EXPECT_EQ(finder.Drive1.drive(), "d:");
                 }));
    search("c:\\m", ".wav");
    // The search continues in its own folder.
    EXPECT_THAT(lines(finder.lstfiles), ElementsAre("c:\\m\\a.wav"));
}

// --- the window -----------------------------------------------------------------------------

TEST_F(FinderWindowTest, LoadsAtTheCentreOfTheScreen) {
    windows.frmsearch.unload();
    windows.frmsearch.setDesignedSize(6000_twips, 4000_twips);
    windows.frmsearch.load();
    EXPECT_EQ(windows.frmsearch.left(), (shell.width - 6000_twips) / 2);
    EXPECT_EQ(windows.frmsearch.top(), (shell.height - 4000_twips) / 2);
}

TEST_F(FinderWindowTest, TheCloseButtonAndTheCloseMenuEntryUnloadTheWindow) {
    windows.frmsearch.show();
    finder.cmdend.click();
    EXPECT_FALSE(windows.frmsearch.loaded());
    windows.frmsearch.show();
    finder.mnuClose.click();
    EXPECT_FALSE(windows.frmsearch.loaded());
    EXPECT_FALSE(windows.frmsearch.visible());
}

TEST_F(FinderWindowTest, IsResetWhenItIsClosedAndOpenedAgain) {
    disk.addFile("c:\\m\\a.mp3");
    finder.Text1.setText("a");
    finder.chkhidelist.setValue(1).passOver();
    search("c:\\m", ".mp3");
    finder.cmdend.click();
    windows.frmsearch.show();
    EXPECT_EQ(finder.zFileExt.text(), ".wav");
    EXPECT_EQ(finder.Text1.text(), "");
    EXPECT_EQ(finder.chkhidelist.value(), 0);
    EXPECT_EQ(finder.Dir1.path(), "c:\\sonarith");
    EXPECT_EQ(finder.lbltime.caption(), "Time taken: 0 second(s)");
    EXPECT_EQ(finder.Label1.caption(), "");
    EXPECT_THAT(lines(finder.lstfiles), IsEmpty());
    EXPECT_THAT(lines(finder.List1), IsEmpty());
}

TEST_F(FinderWindowTest, RemoveDuplicateDirsKeepsOnlyTheFirstOfEqualLines) {
    for (const char* folder : {"a", "b", "a", "a", "A", "b", "a"}) {
        finder.List1.addItem(folder);
    }
    window.RemoveDuplicateDirs();
    EXPECT_THAT(lines(finder.List1), ElementsAre("a", "b", "A"));
}

} // namespace
} // namespace sonarith
