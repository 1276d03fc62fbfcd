// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/files/hidden_name.h"

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/linux/files/save_place.h"
#include "support/forked_child.h"
#include "support/refused_call.h"
#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith::files {
namespace {

namespace fs = std::filesystem;
using testing::MatchesRegex;

constexpr std::string_view leftoverText = "an incomplete recording";

class HiddenNameTest : public testing::Test {
  protected:
    /// Creates a file like those that a killed process leaves: its hidden name starts with this
    /// machine's prefix, and no process has claimed the file by claim().
    fs::path leftover() const {
        const fs::path path = folder / newHiddenName();
        std::ofstream(path) << leftoverText;
        return path;
    }
    static FileDescriptor open(const fs::path& path) {
        return FileDescriptor(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    }
    void sweep() const { removeLeftovers(openFolder(folder.path())); }

    fakes::TempFolder folder;
};

TEST_F(HiddenNameTest, NewNamesAreHiddenAndUniqueAndStartWithTheMachinesPrefix) {
    const std::string name = newHiddenName();
    EXPECT_THAT(name, MatchesRegex("\\.sonarith-[0-9a-f]{8}-[0-9a-f]{16}"));
    EXPECT_NE(name, newHiddenName());
    EXPECT_EQ(name.substr(0, 19), newHiddenName().substr(0, 19))
        << "all names created on one machine must have the same prefix";
}

TEST_F(HiddenNameTest, TheDestructorDeletesTheFile) {
    const fs::path path = leftover();
    {
        const HiddenName name(openFolder(folder.path()), path.filename());
        EXPECT_TRUE(fs::exists(path));
    }
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(HiddenNameTest, ARenameReplacesAnExistingFile) {
    fs::create_directory(folder / "other");
    std::ofstream(folder / "other/a.wav") << "old";
    const fs::path path = leftover();
    {
        HiddenName name(openFolder(folder.path()), path.filename());
        EXPECT_EQ(name.renameTo(openFolder(folder / "none"), "a.wav"), EBADF);
        EXPECT_TRUE(fs::exists(path));
        EXPECT_EQ(name.renameTo(openFolder(folder / "other"), "a.wav"), 0);
    }
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(fs::file_size(folder / "other/a.wav"), leftoverText.size());
}

TEST_F(HiddenNameTest, RemoveLeftoversDeletesUnclaimedFiles) {
    const fs::path first = leftover();
    const fs::path second = leftover();
    sweep();
    EXPECT_FALSE(fs::exists(first));
    EXPECT_FALSE(fs::exists(second));
}

TEST_F(HiddenNameTest, RemoveLeftoversKeepsAFileWhileItIsClaimed) {
    const fs::path path = leftover();
    {
        const FileDescriptor file = open(path);
        EXPECT_TRUE(claim(file));
        const FileDescriptor duplicate(::dup(file.get()));
        sweep();
        EXPECT_TRUE(fs::exists(path));
        EXPECT_FALSE(claim(open(path))) << "a claimed file must not be claimed a second time";
        unclaim(file);
        EXPECT_TRUE(claim(open(path)));
        EXPECT_TRUE(claim(file));
        sweep();
        EXPECT_TRUE(fs::exists(path));
    }
    sweep();
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(HiddenNameTest, RemoveLeftoversDeletesAFileWhoseClaimingProcessWasKilled) {
    const fs::path path = leftover();
    test::ReportingChild child([&](const auto& report) {
        const FileDescriptor file = open(path);
        report(claim(file) ? '1' : '0');
        ::pause(); // keeps the file claimed until the process is killed
    });
    EXPECT_EQ(child.nextReport(), '1');
    sweep();
    EXPECT_TRUE(fs::exists(path));
    ASSERT_TRUE(child.kill());
    sweep();
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(HiddenNameTest, RemoveLeftoversKeepsFilesWithoutAHiddenNameOfThisMachine) {
    std::string ofAnotherMachine = newHiddenName();
    ofAnotherMachine[10] = ofAnotherMachine[10] == '0' ? '1' : '0';
    std::string inCapitals = newHiddenName();
    inCapitals.back() = 'A';
    const std::string hidden = newHiddenName();
    const std::vector<std::string> names{
        ofAnotherMachine, inCapitals,       hidden + "0",      hidden.substr(0, hidden.size() - 1),
        hidden + ".wav",  hidden.substr(1), ".sonarith-notes", ".sonarith-"};
    for (const std::string& name : names) {
        std::ofstream(folder / name) << "mine";
    }
    sweep();
    for (const std::string& name : names) {
        EXPECT_TRUE(fs::exists(folder / name)) << name;
    }
}

TEST_F(HiddenNameTest, RemoveLeftoversKeepsFoldersPipesAndSymbolicLinks) {
    const fs::path subfolder = folder / newHiddenName();
    const fs::path pipe = folder / newHiddenName();
    const fs::path link = folder / newHiddenName();
    const fs::path dangling = folder / newHiddenName();
    std::ofstream(folder / "mine") << "mine";
    fs::create_directory(subfolder);
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    fs::create_symlink("mine", link);
    fs::create_symlink("nowhere", dangling);
    sweep();
    EXPECT_TRUE(fs::is_directory(subfolder));
    EXPECT_TRUE(fs::is_fifo(pipe));
    EXPECT_TRUE(fs::exists(link));
    EXPECT_TRUE(fs::is_symlink(dangling));
    EXPECT_TRUE(fs::exists(folder / "mine"));
}

TEST_F(HiddenNameTest, RemoveLeftoversKeepsAFileOfAnotherUser) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can create another user's file";
    }
    const fs::path path = leftover();
    constexpr uid_t nobody = 65534;
    ASSERT_EQ(::chown(path.c_str(), nobody, nobody), 0);
    sweep();
    EXPECT_TRUE(fs::exists(path));
    ASSERT_EQ(::chown(path.c_str(), ::geteuid(), ::getegid()), 0);
    sweep();
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(HiddenNameTest, RemoveLeftoversDeletesNothingOnAFileSystemWithoutLocks) {
    fs::permissions(folder.path(), fs::perms(0777));
    EXPECT_EQ(test::runUnprivileged([&] {
                  if (!test::refuseFileLocks()) {
                      return 1;
                  }
                  const fs::path path = leftover();
                  const bool claimed = claim(open(path));
                  sweep();
                  return claimed && fs::exists(path) ? 0 : 2;
              }),
              0);
}

TEST_F(HiddenNameTest, RemoveLeftoversIgnoresAFolderThatCannotBeListed) {
    removeLeftovers(openFolder(folder / "none"));
    const fs::path path = leftover();
    fs::permissions(path, fs::perms(0666));
    fs::permissions(folder.path(), fs::perms(0333));
    EXPECT_EQ(test::runUnprivileged([&] {
                  const FileDescriptor opened = openFolder(folder.path());
                  removeLeftovers(opened);
                  return opened.valid() ? 0 : 1;
              }),
              0);
    fs::permissions(folder.path(), fs::perms(0777));
    EXPECT_TRUE(fs::exists(path));
}

} // namespace
} // namespace sonarith::files
