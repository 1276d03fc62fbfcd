// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/folder_controls.h"

#include <gmock/gmock.h>

#include "platform/controls/form.h"
#include "support/fake_directories.h"
#include "support/fake_file_system.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

class FolderControlsTest : public testing::Test {
  protected:
    FolderControlsTest() {
        disk.addFolder("c:\\music\\one");
        disk.addFolder("d:\\albums");
        folder.onChange = [this] {
            ++folderChanges;
        };
        drive.onChange = [this] {
            ++driveChanges;
        };
        files.setProgramFolder("c:\\music");
        form.load();
    }
    test::FakeFileSystem files;
    test::FakeDirectories disk;
    Form form{"frmsearch"};
    DirListBox folder{form, "Dir1", disk, files};
    DriveListBox drive{form, "Drive1", disk, files};
    int folderChanges = 0;
    int driveChanges = 0;
};

TEST_F(FolderControlsTest, LoadingTheFormSelectsTheProgramsFolderAndItsDriveAndRunsNoHandler) {
    EXPECT_EQ(folder.path(), "c:\\music");
    EXPECT_EQ(drive.drive(), "c:");
    EXPECT_EQ(folderChanges, 0);
    EXPECT_EQ(driveChanges, 0);
}

TEST_F(FolderControlsTest, SettingThePathToAnExistingFolderKeepsTheGivenUpperAndLowerCase) {
    EXPECT_TRUE(folder.setPath("C:\\Music\\ONE\\").ok());
    EXPECT_EQ(folder.path(), "C:\\Music\\ONE");
    EXPECT_EQ(folderChanges, 1);
}

TEST_F(FolderControlsTest, AMissingFolderLeavesThePathUnchanged) {
    const Status status = folder.setPath("c:\\none");
    ASSERT_FALSE(status.ok());
    EXPECT_EQ(status.error().number, ErrorNumber::pathNotFound);
    EXPECT_EQ(folder.path(), "c:\\music");
    EXPECT_FALSE(folder.setPath("").ok());
    EXPECT_FALSE(folder.setPath("x:").ok());
    EXPECT_EQ(folderChanges, 0);
}

TEST_F(FolderControlsTest, SettingThePathThatIsAlreadySetRunsNoHandler) {
    EXPECT_TRUE(folder.setPath("c:\\music").ok());
    EXPECT_EQ(folderChanges, 0);
}

TEST_F(FolderControlsTest, ADriveAloneOpensItsMostRecentFolder) {
    EXPECT_TRUE(folder.setPath("d:").ok());
    EXPECT_EQ(folder.path(), "d:\\");
    EXPECT_TRUE(folder.setPath("d:\\albums").ok());
    EXPECT_TRUE(folder.setPath("C:").ok());
    EXPECT_EQ(folder.path(), "c:\\music");
    EXPECT_TRUE(folder.setPath("d:").ok());
    EXPECT_EQ(folder.path(), "d:\\albums");
}

TEST_F(FolderControlsTest, ADriveAloneOpensItsRootIfItsMostRecentFolderWasRemoved) {
    EXPECT_TRUE(folder.setPath("d:\\albums").ok());
    EXPECT_TRUE(folder.setPath("c:\\music").ok());
    disk.removeFolder("d:\\albums");
    EXPECT_TRUE(folder.setPath("d:").ok());
    EXPECT_EQ(folder.path(), "d:\\");
}

TEST_F(FolderControlsTest, LoadingTheFormAgainForgetsTheMostRecentFolderOfEachDrive) {
    EXPECT_TRUE(folder.setPath("d:\\albums").ok());
    form.unload();
    form.load();
    EXPECT_EQ(folder.path(), "c:\\music");
    EXPECT_TRUE(folder.setPath("d:").ok());
    EXPECT_EQ(folder.path(), "d:\\");
}

TEST_F(FolderControlsTest, ADriveIsChosenByLetterOrPath) {
    EXPECT_TRUE(drive.setDrive("D:\\albums").ok());
    EXPECT_EQ(drive.drive(), "d:");
    EXPECT_TRUE(drive.setDrive("d:").ok());
    EXPECT_EQ(driveChanges, 1);
}

TEST_F(FolderControlsTest, AMissingDriveLeavesTheChosenDriveUnchanged) {
    const Status status = drive.setDrive("x:");
    ASSERT_FALSE(status.ok());
    EXPECT_EQ(status.error().number, ErrorNumber::deviceUnavailable);
    EXPECT_FALSE(drive.setDrive("").ok());
    EXPECT_FALSE(drive.setDrive("music").ok());
    EXPECT_EQ(drive.drive(), "c:");
    EXPECT_EQ(driveChanges, 0);
}

TEST_F(FolderControlsTest, ListsTheSubfoldersOfThePathAndNoneOfAnUnreadableFolder) {
    EXPECT_THAT(folder.subfolders(), ElementsAre("one"));
    EXPECT_TRUE(folder.setPath("d:\\").ok());
    EXPECT_THAT(folder.subfolders(), ElementsAre("albums"));
    disk.makeUnreadable("d:\\");
    EXPECT_THAT(folder.subfolders(), testing::IsEmpty());
}

TEST_F(FolderControlsTest, ListsTheDrivesThatExistNow) {
    EXPECT_THAT(drive.drives(), ElementsAre("c:", "d:"));
    disk.addFolder("e:\\");
    EXPECT_THAT(drive.drives(), ElementsAre("c:", "d:", "e:"));
}

} // namespace
} // namespace sonarith
