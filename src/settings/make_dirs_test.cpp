// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/make_dirs.h"

#include <gmock/gmock.h>

#include "support/fake_file_system.h"
#include "support/fake_message_boxes.h"
#include "support/fake_mouse_pointer.h"
#include "support/must_run.h"

namespace sonarith {
namespace {

using test::FakeFileSystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Operation = FakeFileSystem::Operation;

class MakeDirsTest : public ::testing::Test {
  protected:
    bool make(const std::string& path) { return MakeDirs(path, disk_, boxes_, pointer_); }
    void expectFailure(const std::string& path) {
        EXPECT_FALSE(make(path));
        EXPECT_THAT(boxes_.shown,
                    ElementsAre(test::ShownBox{
                        "Error While Attempting to Create Directories on Destination Drive.",
                        BoxIcon::exclamation, BoxButtons::ok, "SETUP"}));
        EXPECT_THAT(pointer_.shapes, ElementsAre(Pointer::hourglass, Pointer::normal));
    }

    FakeFileSystem disk_;
    test::FakeMessageBoxes boxes_;
    test::FakeMousePointer pointer_;
};

TEST_F(MakeDirsTest, CreatesAndThenEntersEachLevel) {
    EXPECT_TRUE(make("c:\\Music\\Wav"));
    EXPECT_THAT(disk_.log,
                ElementsAre("changeDrive c:\\Music\\Wav\\", "changeFolder \\", "makeFolder Music",
                            "changeFolder Music", "makeFolder Wav", "changeFolder Wav"));
    EXPECT_EQ(disk_.pathAsMade("c:\\music\\wav"), "c:\\Music\\Wav");
    EXPECT_THAT(boxes_.shown, IsEmpty());
    EXPECT_THAT(pointer_.shapes, ElementsAre(Pointer::hourglass, Pointer::normal));
}

TEST_F(MakeDirsTest, TheLastFolderBecomesTheCurrentFolder) {
    make("c:\\Music\\Wav\\");
    EXPECT_EQ(disk_.currentFolder(), "c:\\Music\\Wav");
}

TEST_F(MakeDirsTest, EntersExistingFoldersAndCreatesTheMissingFolder) {
    disk_.addFolder("c:\\music\\wav");
    EXPECT_TRUE(make("c:\\MUSIC\\wav\\new"));
    EXPECT_TRUE(disk_.folderExists("c:\\music\\wav\\new"));
}

TEST_F(MakeDirsTest, CreatesNothingForTheRoot) {
    EXPECT_TRUE(make("c:"));
    EXPECT_THAT(disk_.log, ElementsAre("changeDrive c:\\", "changeFolder \\"));
}

TEST_F(MakeDirsTest, ReportsAnUnavailableDriveAndResetsThePointer) {
    expectFailure("x:\\music");
    EXPECT_THAT(disk_.log, ElementsAre("changeDrive x:\\music\\"));
}

TEST_F(MakeDirsTest, ReportsAnEmptyPath) {
    expectFailure("");
}

TEST_F(MakeDirsTest, ShowsTheHourglassWhileTheErrorMessageIsOpen) {
    boxes_.whileUp = test::mustRun([&](const test::ShownBox&) {
        EXPECT_THAT(pointer_.shapes, ElementsAre(Pointer::hourglass));
    });
    EXPECT_FALSE(make("x:\\music"));
}

TEST_F(MakeDirsTest, ContinuesIfTheRootCannotBeEntered) {
    disk_.failWith(Operation::changeFolder, "c:\\", ErrorNumber::pathNotFound);
    EXPECT_TRUE(make("c:\\music"));
}

TEST_F(MakeDirsTest, StopsIfAFolderCannotBeCreated) {
    disk_.failWith(Operation::makeFolder, "c:\\music", ErrorNumber::permissionDenied);
    expectFailure("c:\\music\\wav");
    EXPECT_EQ(disk_.log.back(), "makeFolder music");
}

TEST_F(MakeDirsTest, StopsAtAFolderThatCannotBeEntered) {
    // A file with the name of the folder: makeFolder() fails as for an existing folder, and that
    // error is ignored; then changeFolder() fails, and that error is not ignored.
    disk_.addFile("c:\\music");
    expectFailure("c:\\music\\wav");
    EXPECT_EQ(disk_.log.back(), "changeFolder music");
    EXPECT_EQ(disk_.currentFolder(), "c:\\");
}

TEST_F(MakeDirsTest, TreatsTheThirdCharacterAsABackslash) {
    EXPECT_TRUE(make("c:music\\wav"));
    EXPECT_TRUE(disk_.folderExists("c:\\usic\\wav"));
}

} // namespace
} // namespace sonarith
