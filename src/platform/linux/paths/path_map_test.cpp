// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/path_map.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/linux/paths/machine_names.h"
#include "platform/text/unicode.h"
#include "support/fake_settings_store.h"
#include "support/temp_folder.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;

/// D: is a disk that is mounted at a temporary folder; C: is the machine's root.
class PathMapTest : public ::testing::Test {
  protected:
    void addFile(const std::string& name) {
        fs::create_directories(fs::path(disk_ + "/" + name).parent_path());
        std::ofstream file(disk_ + "/" + name);
        file << "x";
        ASSERT_TRUE(file.good());
    }
    std::string machine(const std::string& logic) { return paths_.locate(logic).value().path; }
    /// The path relative to the disk's mount point.
    std::string onDisk(const std::string& logic) {
        const std::string path = machine(logic);
        EXPECT_EQ(path.substr(0, disk_.size()), disk_);
        return path.substr(disk_.size());
    }
    ErrorNumber failure(std::string_view logic) { return paths_.locate(logic).error().number; }

    /// Creates the disk's folder and the list of mounts for this test; returns the list's path.
    std::string mountList() {
        fs::create_directories(disk_);
        std::ofstream list(folder_ / "mounts");
        list << "1 0 8:1 / / rw - ext4 /dev/a rw\n"
             << "2 1 8:2 / " << disk_ << " rw - ext4 /dev/b rw\n";
        return (folder_ / "mounts").string();
    }

    fakes::TempFolder folder_;
    std::string disk_ = (folder_ / "disk").string();
    test::FakeSettingsStore store_;
    DriveTable drives_{store_};
    MountInfo mounts_{mountList()};
    PathMap paths_{drives_, mounts_};
};

TEST_F(PathMapTest, TranslatesEachLetterToTheMountPointOfItsDisk) {
    EXPECT_EQ(machine("c:\\no\\such"), "/no/such");
    EXPECT_EQ(machine("C:\\"), "/");
    EXPECT_EQ(machine("d:\\"), disk_);
    EXPECT_EQ(machine("d:"), disk_);
}

TEST_F(PathMapTest, ToLogicUsesTheDriveWithTheDeepestMountPoint) {
    EXPECT_EQ(paths_.toLogic(disk_ + "/Music/a.wav"), "D:\\Music\\a.wav");
    EXPECT_EQ(paths_.toLogic(disk_), "D:\\");
    EXPECT_EQ(paths_.toLogic(disk_ + "/"), "D:\\");
    EXPECT_EQ(paths_.toLogic("/usr/share"), "C:\\usr\\share");
    EXPECT_EQ(paths_.toLogic("/"), "C:\\");
    EXPECT_EQ(paths_.toLogic("/usr//./lib/../share/"), "C:\\usr\\share");
}

TEST_F(PathMapTest, FindsAFileByItsPathInLowerCaseAndAFolderByItsPathInUpperCase) {
    addFile("Music/ÄRGER/Track 1.WAV");
    EXPECT_EQ(onDisk("d:\\music\\ärger\\track 1.wav"), "/Music/ÄRGER/Track 1.WAV");
    EXPECT_TRUE(paths_.locate("D:\\MUSIC").value().found);
}

TEST_F(PathMapTest, PrefersTheExactNameToANameInAnotherLetterCase) {
    addFile("Track.wav");
    addFile("track.wav");
    addFile("TRACK.WAV");
    EXPECT_EQ(onDisk("d:\\track.wav"), "/track.wav");
    EXPECT_EQ(onDisk("d:\\Track.wav"), "/Track.wav");
    EXPECT_EQ(onDisk("d:\\tRACK.wav"), "/TRACK.WAV"); // the first in byte order
}

TEST_F(PathMapTest, KeepsTheLetterCaseOfNamesThatDoNotExist) {
    addFile("Music/a.wav");
    const Located located = paths_.locate("d:\\music\\New Folder\\B.wav").value();
    EXPECT_EQ(located.path, disk_ + "/Music/New Folder/B.wav");
    EXPECT_EQ(located.folder, disk_ + "/Music/New Folder");
    EXPECT_EQ(located.givenName, "B.wav");
    EXPECT_FALSE(located.found);
}

TEST_F(PathMapTest, ReturnsTheGivenNameAndTheFoundPath) {
    addFile("Track.WAV");
    const Located located = paths_.locate("d:\\track.wav").value();
    EXPECT_TRUE(located.found);
    EXPECT_EQ(located.path, disk_ + "/Track.WAV");
    EXPECT_EQ(located.givenName, "track.wav");
}

TEST_F(PathMapTest, RoundTripsUnusualNames) {
    for (const std::string name :
         {"a\\b", "10:30", "caf\xe9", "\xff\xfe", "x\xef\x81\x9cy", "x\xef\x80\xaay\xef\x80\xbf",
          " . ", "*?[a]", "What?*.mp3", "new\nline", "\xef\x80", "C:", "...", "\u2217",
          "What\u0294", "a\u00ac\u02d0B"}) {
        addFile(name);
        const std::string logic = paths_.toLogic(disk_ + "/" + name);
        EXPECT_EQ(machine(logic), disk_ + "/" + name) << logic;
        EXPECT_EQ(machine(lowerCase(logic)), disk_ + "/" + name) << logic;
    }
}

TEST_F(PathMapTest, DistinguishesAFileWithAWildcardInItsNameFromAMatchingFile) {
    addFile("What?.MP3");
    addFile("whats.mp3");
    const std::string logic = lowerCase(paths_.toLogic(disk_ + "/What?.MP3"));
    EXPECT_EQ(onDisk(logic), "/What?.MP3");
    EXPECT_TRUE(paths_.locate(logic).value().found);
    fs::remove(disk_ + "/What?.MP3");
    EXPECT_FALSE(paths_.locate(logic).value().found);
}

TEST_F(PathMapTest, FindsFilesByPathsFromAnOlderStore) {
    for (const std::string name :
         {"What?.MP3", "a\\b:c*d", "truly \uf02a", "\u2217 \u00ac\u00ac", "*\uf02a\u2217"}) {
        addFile(name);
        const std::string former = "d:\\" + lowerCase(formerLogicName(name));
        EXPECT_EQ(onDisk(former), "/" + name) << former;
        EXPECT_TRUE(paths_.locate(former).value().found);
    }
}

TEST_F(PathMapTest, DecodesANameInTheNotationOfOlderStoresEvenIfTheFileDoesNotExist) {
    EXPECT_EQ(onDisk("d:\\My \uf02aMusic\uf02a"), "/My *Music*");
}

TEST_F(PathMapTest, PrefersTheCurrentNotationOfANameToTheNotationOfOlderStores) {
    addFile("a\u00acB");
    addFile("a\u00ac\u00acB");
    EXPECT_EQ(onDisk("d:\\a\u00ac\u00acb"), "/a\u00acB");
}

TEST_F(PathMapTest, ResolvesDotsTextually) {
    addFile("a/b.wav");
    EXPECT_EQ(onDisk("d:\\a\\..\\.\\a\\\\b.wav"), "/a/b.wav");
    EXPECT_EQ(machine("d:\\..\\..\\a"), disk_ + "/a"); // not above the root of the drive
    EXPECT_EQ(onDisk("d:/a/b.wav"), "/a/b.wav");
}

TEST_F(PathMapTest, RefusesInvalidPaths) {
    EXPECT_EQ(failure(""), ErrorNumber::badFileName);
    EXPECT_EQ(failure("music\\a.wav"), ErrorNumber::badFileName);
    EXPECT_EQ(failure("d:\\music\\c:\\music\\a.wav"), ErrorNumber::badFileName);
    EXPECT_EQ(failure("d:\\what?.wav"), ErrorNumber::badFileName);
    EXPECT_EQ(failure("d:\\*\\a.wav"), ErrorNumber::badFileName);
    EXPECT_EQ(failure(std::string_view("d:\\a\0b", 6)), ErrorNumber::badFileName);
    EXPECT_EQ(failure("x:\\music"), ErrorNumber::pathNotFound);
    EXPECT_EQ(failure("1:\\music"), ErrorNumber::pathNotFound);
}

TEST_F(PathMapTest, FindsADanglingLink) {
    fs::create_symlink("/no/such/file", disk_ + "/Link.wav");
    EXPECT_TRUE(paths_.locate("d:\\link.wav").value().found);
}

} // namespace
} // namespace sonarith
