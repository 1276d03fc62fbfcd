// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/unnamed_file.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include "support/temp_folder.h"

namespace sonarith::sound {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

std::string contentOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void writeFile(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

int entriesIn(const fs::path& folder) {
    return static_cast<int>(std::distance(fs::directory_iterator(folder), {}));
}

FileDescriptor unnamedIn(const fs::path& folder, const std::string& content) {
    Result<FileDescriptor> made = createUnnamedFile(folder);
    EXPECT_TRUE(made.ok());
    EXPECT_EQ(::write(made.value().get(), content.data(), content.size()),
              static_cast<ssize_t>(content.size()));
    return std::move(made.value());
}

ErrorNumber numberOf(const Status& status) {
    EXPECT_FALSE(status.ok());
    return status.ok() ? ErrorNumber{} : status.error().number;
}

/// Runs `body` in a process of its own, with its own limits and rights; answers what it answers.
int inChild(const std::function<int()>& body) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(body());
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class UnnamedFileTest : public testing::Test {
  protected:
    fakes::TempFolder folder;
    const fs::path target = folder / "target.wav";
};

TEST_F(UnnamedFileTest, IsSeenByNobodyUntilItIsPublished) {
    const FileDescriptor file = unnamedIn(folder.path(), "new");
    EXPECT_EQ(entriesIn(folder.path()), 0);
    EXPECT_TRUE(publish(file, target).ok());
    EXPECT_EQ(contentOf(target), "new");
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(UnnamedFileTest, ReplacesAFileAndKeepsItsMode) {
    writeFile(target, "old");
    fs::permissions(target, fs::perms(0640));
    EXPECT_TRUE(publish(unnamedIn(folder.path(), "new"), target).ok());
    EXPECT_EQ(contentOf(target), "new");
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0640));
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(UnnamedFileTest, GivesANewFileTheModeThatTheUmaskLeaves) {
    const mode_t before = ::umask(027);
    EXPECT_TRUE(publish(unnamedIn(folder.path(), "new"), target).ok());
    ::umask(before);
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0640));
}

TEST_F(UnnamedFileTest, IsCopiedForASecondNameSoThatBothAreIndependent) {
    const FileDescriptor file = unnamedIn(folder.path(), "new");
    EXPECT_TRUE(publish(file, target).ok());
    EXPECT_TRUE(publish(file, folder / "second.wav").ok());
    EXPECT_EQ(contentOf(folder / "second.wav"), "new");
    EXPECT_EQ(fs::hard_link_count(target), 1U);
    EXPECT_EQ(entriesIn(folder.path()), 2);
}

TEST_F(UnnamedFileTest, IsCopiedIntoAnotherFileSystem) {
    struct stat here {};
    struct stat there {};
    ASSERT_EQ(::stat(folder.path().c_str(), &here), 0);
    if (::stat("/dev/shm", &there) != 0 || here.st_dev == there.st_dev) {
        GTEST_SKIP() << "this machine has no second file system to write to";
    }
    std::string name = "/dev/shm/sonarith-test-XXXXXX";
    ASSERT_NE(::mkdtemp(name.data()), nullptr);
    const fs::path other = name;
    const std::string content(3'000'000, 'x'); // several buffers of the copy
    const FileDescriptor file = unnamedIn(folder.path(), content);
    EXPECT_TRUE(publish(file, other / "fresh").ok());
    EXPECT_EQ(contentOf(other / "fresh"), content);
    writeFile(other / "old", "old");
    EXPECT_TRUE(publish(file, other / "old").ok());
    EXPECT_EQ(contentOf(other / "old"), content);
    EXPECT_EQ(entriesIn(other), 2);
    fs::remove_all(other);
}

TEST_F(UnnamedFileTest, IsCopiedIfItHasLostTheRightToAName) {
    writeFile(folder / "gone", "new");
    const FileDescriptor file(::open((folder / "gone").c_str(), O_RDWR | O_CLOEXEC));
    fs::remove(folder / "gone");
    EXPECT_TRUE(publish(file, target).ok());
    EXPECT_EQ(contentOf(target), "new");
}

TEST_F(UnnamedFileTest, FollowsASymbolicLink) {
    writeFile(folder / "real", "old");
    fs::create_symlink("real", target);
    EXPECT_TRUE(publish(unnamedIn(folder.path(), "new"), target).ok());
    EXPECT_TRUE(fs::is_symlink(target));
    EXPECT_EQ(contentOf(folder / "real"), "new");
}

TEST_F(UnnamedFileTest, TakesNamesThatAreNotValidUtf8) {
    const fs::path odd = folder / "tr\xE4"
                                  "ck\xFF.wav";
    EXPECT_TRUE(publish(unnamedIn(folder.path(), "new"), odd).ok());
    EXPECT_EQ(contentOf(odd), "new");
}

TEST_F(UnnamedFileTest, TakesTheLongestNameAndNoLongerOne) {
    const FileDescriptor file = unnamedIn(folder.path(), "new");
    const fs::path longest = folder / std::string(255, 'n');
    EXPECT_TRUE(publish(file, longest).ok());
    EXPECT_TRUE(publish(file, longest).ok()) << "replacing it needs a hidden name that fits, too";
    const Status status = publish(file, folder / std::string(256, 'n'));
    EXPECT_EQ(numberOf(status), ErrorNumber::badFileName);
    EXPECT_THAT(status.error().text, HasSubstr("too long"));
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(UnnamedFileTest, IsNotPublishedIntoAFolderThatIsMissing) {
    const Status status = publish(unnamedIn(folder.path(), "new"), folder / "no" / "target.wav");
    EXPECT_EQ(numberOf(status), ErrorNumber::pathNotFound);
    EXPECT_THAT(status.error().text, HasSubstr("does not exist"));
}

TEST_F(UnnamedFileTest, IsNotPublishedBelowAFile) {
    writeFile(target, "old");
    const Status status = publish(unnamedIn(folder.path(), "new"), target / "below.wav");
    EXPECT_EQ(numberOf(status), ErrorNumber::pathNotFound);
    EXPECT_EQ(contentOf(target), "old");
}

TEST_F(UnnamedFileTest, NeverReplacesAFolder) {
    fs::create_directory(target);
    const FileDescriptor file = unnamedIn(folder.path(), "new");
    EXPECT_EQ(numberOf(publish(file, target)), ErrorNumber::pathFileAccess);
    EXPECT_EQ(numberOf(publish(file, target / "")), ErrorNumber::pathFileAccess);
    EXPECT_TRUE(fs::is_directory(target));
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(UnnamedFileTest, NeverReplacesWhatIsNoPlainFile) {
    ASSERT_EQ(::mkfifo(target.c_str(), 0600), 0);
    const FileDescriptor file = unnamedIn(folder.path(), "new");
    EXPECT_EQ(numberOf(publish(file, target)), ErrorNumber::pathFileAccess);
    EXPECT_TRUE(fs::is_fifo(target));
    fs::create_symlink("nowhere", folder / "dangling");
    EXPECT_EQ(numberOf(publish(file, folder / "dangling")), ErrorNumber::pathFileAccess);
    EXPECT_TRUE(fs::is_symlink(folder / "dangling"));
}

TEST_F(UnnamedFileTest, TakesNoNameWithANulInIt) {
    const fs::path torn = folder / std::string("one\0two", 7);
    EXPECT_EQ(numberOf(publish(unnamedIn(folder.path(), "new"), torn)), ErrorNumber::badFileName);
    EXPECT_EQ(entriesIn(folder.path()), 0);
}

TEST_F(UnnamedFileTest, TakesNoEmptyName) {
    EXPECT_FALSE(publish(unnamedIn(folder.path(), "new"), "").ok());
}

TEST_F(UnnamedFileTest, IsNotPublishedWhereNobodyMayWrite) {
    // The system's process table takes files from nobody, whatever their rights.
    EXPECT_FALSE(publish(unnamedIn(folder.path(), "new"), "/proc/target.wav").ok());
    EXPECT_FALSE(createUnnamedFile("/proc").ok());
}

TEST_F(UnnamedFileTest, LeavesAReadOnlyFolderAndAReadOnlyFileAsTheyAre) {
    const fs::path closed = folder / "closed";
    const fs::path locked = folder / "locked.wav";
    fs::create_directory(closed);
    writeFile(closed / "kept.wav", "old");
    writeFile(locked, "old");
    fs::permissions(closed / "kept.wav", fs::perms(0666));
    fs::permissions(locked, fs::perms(0444));
    fs::permissions(closed, fs::perms(0555));
    fs::permissions(folder.path(), fs::perms(0777));
    const int answer = inChild([&] {
        constexpr uid_t nobody = 65534; // the rights of a person, where the tests are run by root
        if (::geteuid() == 0 && ::setuid(nobody) != 0) {
            return 100;
        }
        const FileDescriptor file = unnamedIn(folder.path(), "new");
        const auto isDenied = [&](const fs::path& path) {
            return numberOf(publish(file, path)) == ErrorNumber::permissionDenied;
        };
        return (isDenied(closed / "fresh.wav") ? 0 : 1) + (isDenied(closed / "kept.wav") ? 0 : 2) +
               (isDenied(locked) ? 0 : 4) + (createUnnamedFile(closed).ok() ? 8 : 0);
    });
    fs::permissions(closed, fs::perms(0777));
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(contentOf(closed / "kept.wav"), "old");
    EXPECT_EQ(contentOf(locked), "old");
    EXPECT_EQ(entriesIn(closed), 1);
}

TEST_F(UnnamedFileTest, LeavesTheOldFileWhereTheNewOneDoesNotFit) {
    writeFile(target, "old");
    writeFile(folder / "large", std::string(100'000, 'x'));
    const int answer = inChild([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{10'000, 10'000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        // It has a name already, so it is copied, which is what runs into the limit.
        const FileDescriptor file(::open((folder / "large").c_str(), O_RDWR | O_CLOEXEC));
        return numberOf(publish(file, target)) == ErrorNumber::diskFull ? 0 : 1;
    });
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(entriesIn(folder.path()), 2);
}

} // namespace
} // namespace sonarith::sound
