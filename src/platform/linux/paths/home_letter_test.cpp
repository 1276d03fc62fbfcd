// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/home_letter.h"

#include <gmock/gmock.h>

#include "platform/linux/paths/drive_table.h"
#include "support/fake_settings_store.h"

namespace sonarith {
namespace {

using test::FakeSettingsStore;
using testing::IsEmpty;

class MoveToHomeLetterTest : public testing::Test {
  protected:
    /// Stores `path`, migrates the store, and returns the path that is then stored.
    std::string moved(const std::string& path, const std::string& home = "/home/jane") {
        store_.put("Settings", "DecodePath", path);
        move(home);
        return store_.held("Settings", "DecodePath").value_or("");
    }
    void move(const std::string& home = "/home/jane") {
        moveToHomeLetter(store_, home, {{"Settings", "DecodePath"}});
    }

    FakeSettingsStore store_;
};

TEST_F(MoveToHomeLetterTest, WritesNothingToAStoreThatNeedsNoChange) {
    move();
    EXPECT_EQ(store_.size(), 0U);
    store_.put("Drives", "D", "/media/a");
    for (const char* path :
         {"H:\\Music", "C:\\srv\\music", "D:\\x", "x:\\home\\jane\\y", "", "relative",
          "C:", "\\home\\jane\\x", "C:\\home\\janet\\x", "C:\\home"}) {
        EXPECT_EQ(moved(path), path);
    }
    EXPECT_THAT(store_.writes, IsEmpty());
}

TEST_F(MoveToHomeLetterTest, APathInTheHomeFolderGetsTheHomeLetter) {
    EXPECT_EQ(moved("C:\\home\\jane\\My Music\\CD"), "H:\\My Music\\CD");
    EXPECT_EQ(moved("c:\\home\\jane\\My Music"), "H:\\My Music");
    EXPECT_EQ(moved("c:\\home\\jane.doe\\.local\\WAVFiles", "/home/jane.doe"),
              "H:\\.local\\WAVFiles");
    store_.put("Drives", "D", "/home");
    EXPECT_EQ(moved("d:\\jane\\music"), "H:\\music");
    store_.put("Drives", "E", "/home/jane"); // the home folder is a mount point
    EXPECT_EQ(moved("e:\\music"), "H:\\music");
}

// destination_folder.h splits a stored path at its last backslash. "C:\home\jane" would become
// "H:", which contains no backslash, so this path is not changed.
TEST_F(MoveToHomeLetterTest, KeepsTheSplitOfAPathIntoParentFolderAndName) {
    EXPECT_EQ(moved("C:\\home\\jane"), "C:\\home\\jane");
    EXPECT_EQ(moved("C:\\home\\jane\\"), "H:\\");
    EXPECT_EQ(moved("C:\\home\\jane\\x\\"), "H:\\x\\");
}

TEST_F(MoveToHomeLetterTest, KeepsTheLetterOfAMountInTheHomeFolder) {
    store_.put("Drives", "D", "/home/jane/stick");
    EXPECT_EQ(moved("D:\\music"), "D:\\music");
}

TEST_F(MoveToHomeLetterTest, ChangesNothingIfTheHomeFolderIsTheRoot) {
    EXPECT_EQ(moved("C:\\music", "/"), "C:\\music");
    EXPECT_THAT(store_.writes, IsEmpty());
}

TEST_F(MoveToHomeLetterTest, AMountAndItsPathsMoveFromTheLetterHToAFreeLetter) {
    store_.put("Drives", "D", "/media/a");
    store_.put("Drives", "H", "/media/b");
    EXPECT_EQ(moved("H:\\My Music"), "E:\\My Music");
    EXPECT_EQ(store_.held("Drives", "E"), "/media/b");
    EXPECT_EQ(store_.held("Drives", "H"), std::nullopt);
    move(); // a second call changes nothing
    EXPECT_EQ(store_.held("Settings", "DecodePath"), "E:\\My Music");
    DriveTable table(store_, "/home/jane");
    table.update({{"/media/b", "ext4"}});
    EXPECT_EQ(table.mountPointOf('E'), "/media/b");
}

TEST_F(MoveToHomeLetterTest, AnInterruptedMigrationIsCompleted) {
    // The interrupted migration has assigned E: to the mount, but has not yet changed the path or
    // deleted the entry for H:.
    store_.put("Drives", "E", "/media/b");
    store_.put("Drives", "H", "/media/b");
    EXPECT_EQ(moved("h:\\music"), "E:\\music");
    EXPECT_EQ(store_.held("Drives", "H"), std::nullopt);
}

TEST_F(MoveToHomeLetterTest, PathsOnAMountWithTheLetterHGetTheRootsLetterIfNoLetterIsFree) {
    for (char letter = 'D'; letter <= 'Z'; ++letter) {
        store_.put("Drives", std::string(1, letter), std::string("/media/") + letter + ":");
    }
    EXPECT_EQ(moved("H:\\music"), "C:\\media\\H\u02d0\\music");
}

TEST_F(MoveToHomeLetterTest, PathsKeepTheLetterHIfItsMountIsTheHomeFolder) {
    store_.put("Drives", "H", "/home/jane");
    EXPECT_EQ(moved("H:\\music"), "H:\\music");
    EXPECT_EQ(store_.held("Drives", "H"), std::nullopt);
    EXPECT_THAT(store_.writes, IsEmpty());
}

} // namespace
} // namespace sonarith
