// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/linux_file_system.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

#include <sys/stat.h>

#include "platform/linux/paths/patient_fixture.h"
#include "platform/text/unicode.h"
#include "support/fake_settings_store.h"
#include "support/temp_folder.h"
#include "support/unprivileged.h"

#if defined(__SANITIZE_THREAD__)
/// A forked process that uses the patient classes (patient_paths.h) starts threads. By default the
/// sanitizer aborts a forked process that starts threads.
extern "C" const char* __tsan_default_options() {
    return "die_after_fork=0";
}
#endif

namespace sonarith {
namespace {

namespace fs = std::filesystem;

/// D: is a temporary folder; C: is the machine's root.
class LinuxFileSystemTest : public ::testing::TestWithParam<test::Reach> {
  protected:
    // The process must not remain in a folder that is about to be deleted.
    ~LinuxFileSystemTest() override { fs::current_path("/"); }

    void write(const std::string& name, const std::string& content = "sound") {
        fs::create_directories(fs::path(disk_ + "/" + name).parent_path());
        std::ofstream(disk_ + "/" + name) << content;
    }
    /// The content of a file; std::nullopt if no file has exactly this name.
    std::optional<std::string> read(const std::string& name) {
        std::ifstream file(disk_ + "/" + name);
        return file ? std::optional((std::stringstream() << file.rdbuf()).str()) : std::nullopt;
    }
    static ErrorNumber numberOf(const Status& status) { return status.error().number; }

    /// Creates the disk's folder and the list of mounts for this test; returns the list's path.
    std::string mountList() {
        fs::create_directories(disk_);
        std::ofstream list(folder_ / "mounts");
        list << "1 0 8:1 / / rw - ext4 /dev/a rw\n"
             << "2 1 8:2 / " << disk_ << " rw - ext4 /dev/b rw\n"
             << "3 1 8:3 / " << (folder_ / "gone").string() << " rw - ext4 /dev/c rw\n";
        return (folder_ / "mounts").string();
    }

    /// Creates objects of the patient classes; returns null if the test accesses the machine
    /// directly. A forked process calls this function again, since it does not inherit its parent's
    /// threads.
    std::unique_ptr<test::PatientMachine> reach() {
        return GetParam() == test::Reach::patiently
                   ? std::make_unique<test::PatientMachine>(store_, (folder_ / "mounts").string(),
                                                            disk_)
                   : nullptr;
    }
    /// Runs `step` as a user without privileges; returns the number of the error.
    int unprivileged(const std::function<Status(FileSystem&)>& step) {
        return test::runUnprivileged([&] {
            const auto reached = reach();
            return static_cast<int>(
                numberOf(step(reached ? static_cast<FileSystem&>(reached->files) : direct_)));
        });
    }

    fakes::TempFolder folder_;
    std::string disk_ = (folder_ / "disk").string();
    test::FakeSettingsStore store_;
    DriveTable drives_{store_};
    MountInfo mounts_{mountList()};
    PathMap paths_{drives_, mounts_};
    LinuxFileSystem direct_{paths_, disk_};
    std::unique_ptr<test::PatientMachine> patient_ = reach();
    FileSystem& files_ = patient_ ? static_cast<FileSystem&>(patient_->files) : direct_;
};

INSTANTIATE_TEST_SUITE_P(Reached, LinuxFileSystemTest,
                         ::testing::Values(test::Reach::directly, test::Reach::patiently),
                         [](const auto& reach) { return test::nameOf(reach.param); });

TEST_P(LinuxFileSystemTest, FindsAFileWhoseNameIsGivenInAnyLetterCase) {
    write("Music/Track.WAV", std::string(123, 'x'));
    EXPECT_EQ(files_.fileLength("d:\\music\\track.wav").value(), 123);
    EXPECT_TRUE(files_.fileExists("D:\\MUSIC\\TRACK.WAV"));
}

TEST_P(LinuxFileSystemTest, DistinguishesAMissingFileFromAMissingFolder) {
    fs::create_directory(disk_ + "/music");
    EXPECT_EQ(files_.fileLength("d:\\music\\a.wav").error().number, ErrorNumber::fileNotFound);
    EXPECT_EQ(files_.fileLength("d:\\none\\a.wav").error().number, ErrorNumber::pathNotFound);
    EXPECT_EQ(files_.fileLength("x:\\a.wav").error().number, ErrorNumber::pathNotFound);
    EXPECT_EQ(files_.fileLength("d:\\music").error().number, ErrorNumber::fileNotFound);
    EXPECT_FALSE(files_.fileExists("d:\\music"));
}

TEST_P(LinuxFileSystemTest, ARenamedFileHasTheLetterCaseOfTheNewName) {
    write("music/old.wav");
    EXPECT_TRUE(files_.rename("D:\\MUSIC\\OLD.WAV", "d:\\music\\New Name.WAV").ok());
    EXPECT_EQ(read("music/New Name.WAV"), "sound");
    EXPECT_EQ(read("music/old.wav"), std::nullopt);
}

TEST_P(LinuxFileSystemTest, NeverReplacesAFileByRenaming) {
    write("a.wav", "a");
    write("B.WAV", "b");
    EXPECT_EQ(numberOf(files_.rename("d:\\a.wav", "d:\\b.wav")), ErrorNumber::fileAlreadyExists);
    EXPECT_EQ(read("a.wav"), "a");
    EXPECT_EQ(read("B.WAV"), "b");
}

TEST_P(LinuxFileSystemTest, RenamesAFileToANameThatDiffersOnlyInLetterCase) {
    write("Track.WAV");
    EXPECT_TRUE(files_.rename("d:\\track.wav", "d:\\track.wav").ok());
    EXPECT_EQ(read("track.wav"), "sound");
    EXPECT_EQ(read("Track.WAV"), std::nullopt);
}

TEST_P(LinuxFileSystemTest, RefusesToRenameOneHardLinkOfAFileToTheNameOfAnotherHardLink) {
    write("a.wav");
    fs::create_hard_link(disk_ + "/a.wav", disk_ + "/A.wav");
    EXPECT_EQ(numberOf(files_.rename("d:\\a.wav", "d:\\A.wav")), ErrorNumber::fileAlreadyExists);
    EXPECT_TRUE(read("a.wav").has_value() && read("A.wav").has_value());
}

TEST_P(LinuxFileSystemTest, RefusesToRenameAMissingFileAndToRenameAFileToAnUnusablePath) {
    write("a.wav");
    EXPECT_EQ(numberOf(files_.rename("d:\\none.wav", "d:\\b.wav")), ErrorNumber::fileNotFound);
    EXPECT_EQ(numberOf(files_.rename("d:\\a.wav", "d:\\none\\b.wav")), ErrorNumber::pathNotFound);
    EXPECT_EQ(numberOf(files_.rename("d:\\a.wav", "d:\\d:\\b.wav")), ErrorNumber::badFileName);
    EXPECT_EQ(numberOf(files_.rename("d:\\a.wav", "d:\\" + std::string(300, 'n'))),
              ErrorNumber::badFileName);
    EXPECT_EQ(numberOf(files_.rename("d:\\a.wav", "c:\\")), ErrorNumber::pathFileAccess);
    EXPECT_EQ(read("a.wav"), "sound");
}

TEST_P(LinuxFileSystemTest, TouchesAFileWithoutChangingIt) {
    write("Track.wav");
    EXPECT_TRUE(files_.touchForWriting("d:\\track.wav").ok());
    EXPECT_EQ(read("Track.wav"), "sound");
}

TEST_P(LinuxFileSystemTest, CreatesAMissingFileByTouching) {
    EXPECT_TRUE(files_.touchForWriting("d:\\New.wav").ok());
    EXPECT_EQ(read("New.wav"), "");
    EXPECT_EQ(numberOf(files_.touchForWriting("d:\\none\\a.wav")), ErrorNumber::pathNotFound);
}

TEST_P(LinuxFileSystemTest, RefusesToTouchFoldersAndPipes) {
    fs::create_directory(disk_ + "/music");
    ASSERT_EQ(::mkfifo((disk_ + "/pipe").c_str(), 0666), 0);
    EXPECT_EQ(numberOf(files_.touchForWriting("d:\\music")), ErrorNumber::pathFileAccess);
    EXPECT_EQ(numberOf(files_.touchForWriting("d:\\pipe")), ErrorNumber::permissionDenied);
}

TEST_P(LinuxFileSystemTest, RefusesToTouchAReadOnlyFile) {
    write("a.wav");
    fs::permissions(disk_ + "/a.wav", fs::perms::owner_read | fs::perms::others_read);
    fs::permissions(folder_.path(), fs::perms::all);
    EXPECT_EQ(unprivileged([](FileSystem& files) { return files.touchForWriting("d:\\a.wav"); }),
              static_cast<int>(ErrorNumber::permissionDenied));
}

TEST_P(LinuxFileSystemTest, RemovesAFileWhoseNameIsGivenInAnyLetterCase) {
    write("Track.WAV");
    EXPECT_TRUE(files_.removeFile("d:\\track.wav").ok());
    EXPECT_EQ(read("Track.WAV"), std::nullopt);
    EXPECT_EQ(numberOf(files_.removeFile("d:\\track.wav")), ErrorNumber::fileNotFound);
}

TEST_P(LinuxFileSystemTest, RemovesNoFolder) {
    fs::create_directory(disk_ + "/music");
    EXPECT_EQ(numberOf(files_.removeFile("d:\\music")), ErrorNumber::pathFileAccess);
    EXPECT_TRUE(fs::is_directory(disk_ + "/music"));
}

TEST_P(LinuxFileSystemTest, RefusesToRemoveAFileFromAFolderWithoutWritePermission) {
    write("music/a.wav");
    fs::permissions(folder_.path(), fs::perms::all);
    fs::permissions(disk_ + "/music",
                    fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);
    if (::geteuid() != 0) {
        fs::permissions(disk_ + "/music", fs::perms::owner_read | fs::perms::owner_exec);
    }
    EXPECT_EQ(unprivileged([](FileSystem& files) { return files.removeFile("d:\\music\\a.wav"); }),
              static_cast<int>(ErrorNumber::permissionDenied));
    EXPECT_EQ(read("music/a.wav"), "sound");
    fs::permissions(disk_ + "/music", fs::perms::owner_all);
}

TEST_P(LinuxFileSystemTest, ChangesTheCurrentDriveAndFolder) {
    fs::create_directories(disk_ + "/Music/Wav");
    EXPECT_TRUE(files_.changeDrive("d:\\anything at all").ok());
    EXPECT_EQ(files_.currentFolder(), "D:\\");
    EXPECT_TRUE(files_.changeFolder("music").ok());
    EXPECT_TRUE(files_.changeFolder("WAV").ok());
    EXPECT_EQ(files_.currentFolder(), "D:\\Music\\Wav");
    EXPECT_EQ(fs::current_path(), fs::path(disk_ + "/Music/Wav"));
    EXPECT_TRUE(files_.changeFolder("\\").ok());
    EXPECT_EQ(files_.currentFolder(), "D:\\");
    EXPECT_TRUE(files_.changeFolder("").ok()); // an empty name is the current folder itself
    EXPECT_EQ(files_.currentFolder(), "D:\\");
}

TEST_P(LinuxFileSystemTest, ADriveChangeReturnsToTheFolderThatWasLastCurrentOnTheDrive) {
    fs::create_directory(disk_ + "/Music");
    ASSERT_TRUE(files_.changeFolder("d:\\music").ok());
    ASSERT_TRUE(files_.changeFolder("c:\\").ok());
    EXPECT_TRUE(files_.changeDrive("d:").ok());
    EXPECT_EQ(files_.currentFolder(), "D:\\Music");
}

TEST_P(LinuxFileSystemTest, KeepsTheCurrentFolderIfAFolderCannotBeEntered) {
    write("file");
    ASSERT_TRUE(files_.changeFolder("d:\\").ok());
    EXPECT_EQ(numberOf(files_.changeFolder("none")), ErrorNumber::pathNotFound);
    EXPECT_EQ(numberOf(files_.changeFolder("file")), ErrorNumber::pathNotFound);
    EXPECT_EQ(files_.currentFolder(), "D:\\");
}

TEST_P(LinuxFileSystemTest, CannotChangeToAMissingDrive) {
    EXPECT_EQ(numberOf(files_.changeDrive("x:\\")), ErrorNumber::deviceUnavailable);
    EXPECT_EQ(numberOf(files_.changeDrive("\\")), ErrorNumber::deviceUnavailable);
    EXPECT_EQ(numberOf(files_.changeDrive("")), ErrorNumber::deviceUnavailable);
    // E: is in the list of mounts, but its folder is missing, as after unplugging.
    EXPECT_EQ(numberOf(files_.changeDrive("e:")), ErrorNumber::deviceUnavailable);
}

TEST_P(LinuxFileSystemTest, ResolvesRelativeNamesInTheCurrentFolder) {
    write("music/a.wav", "12345");
    ASSERT_TRUE(files_.changeFolder("d:\\music").ok());
    EXPECT_EQ(files_.fileLength("A.wav").value(), 5);
    EXPECT_EQ(files_.fileLength("\\music\\a.wav").value(), 5);
    EXPECT_EQ(files_.fileLength("..\\music\\a.wav").value(), 5);
}

TEST_P(LinuxFileSystemTest, ACreatedFolderHasTheLetterCaseOfTheGivenName) {
    ASSERT_TRUE(files_.changeFolder("d:\\").ok());
    EXPECT_TRUE(files_.makeFolder("My Music").ok());
    EXPECT_TRUE(fs::is_directory(disk_ + "/My Music"));
}

TEST_P(LinuxFileSystemTest, CreatesNoFolderWhoseNameExistsInAnyLetterCase) {
    fs::create_directory(disk_ + "/Music");
    write("File");
    ASSERT_TRUE(files_.changeFolder("d:\\").ok());
    EXPECT_EQ(numberOf(files_.makeFolder("MUSIC")), ErrorNumber::pathFileAccess);
    EXPECT_EQ(numberOf(files_.makeFolder("file")), ErrorNumber::pathFileAccess);
    EXPECT_EQ(numberOf(files_.makeFolder("")), ErrorNumber::pathFileAccess);
    EXPECT_EQ(numberOf(files_.makeFolder("none\\deep")), ErrorNumber::pathNotFound);
    EXPECT_FALSE(fs::exists(disk_ + "/MUSIC"));
}

TEST_P(LinuxFileSystemTest, ReturnsTheProgramFolderWithoutATrailingBackslash) {
    EXPECT_EQ(files_.programFolder(), "D:");
    EXPECT_EQ(LinuxFileSystem(paths_, disk_ + "/bin").programFolder(), "D:\\bin");
}

TEST_P(LinuxFileSystemTest, FindsAndRenamesFilesWhoseNamesAreNotUtf8) {
    write("caf\xe9\\1:2.wav");
    const std::string logic = paths_.toLogic(disk_ + "/caf\xe9\\1:2.wav");
    EXPECT_EQ(files_.fileLength(lowerCase(logic)).value(), 5);
    EXPECT_TRUE(files_.rename(logic, "d:\\na\xefve.wav").ok());
    EXPECT_EQ(read("na\xefve.wav"), "sound");
}

} // namespace
} // namespace sonarith
