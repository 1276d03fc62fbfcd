// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/files/unnamed_file.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "support/file_content.h"
#include "support/folder_entries.h"
#include "support/forked_child.h"
#include "support/refused_call.h"
#include "support/small_disk.h"
#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith::files {
namespace {

namespace fs = std::filesystem;
using test::contentOf;
using test::entriesIn;
using testing::HasSubstr;

void writeFile(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

ino_t inodeOf(const fs::path& path) {
    struct stat found {};
    EXPECT_EQ(::stat(path.c_str(), &found), 0);
    return found.st_ino;
}

ErrorNumber numberOf(const Status& status) {
    EXPECT_FALSE(status.ok());
    return status.ok() ? ErrorNumber{} : status.error().number;
}

/// Simulates a full disk: writing more than the first `bytes` bytes of a file fails.
void limitFileSizeTo(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

/// Each test runs with unnamed files, and again with hidden names, as on a file system without
/// unnamed files.
class UnnamedFileTest : public testing::TestWithParam<Concealment> {
  protected:
    Result<UnnamedFile> create(const fs::path& where) const {
        return UnnamedFile::create(where, GetParam());
    }
    UnnamedFile unnamed(const std::string& content) const {
        Result<UnnamedFile> made = create(folder.path());
        EXPECT_TRUE(made.ok());
        EXPECT_EQ(::write(made.value().descriptor().get(), content.data(), content.size()),
                  static_cast<ssize_t>(content.size()));
        return std::move(made.value());
    }
    /// The number of directory entries of one file that is not published: 1 for its hidden name, or
    /// 0 if it has no name.
    int entriesOfOne() const {
        return GetParam() == Concealment::hiddenName || !test::hasUnnamedFiles(folder.path()) ? 1
                                                                                              : 0;
    }

    fakes::TempFolder folder;
    const fs::path target = folder / "target.wav";
};

TEST_P(UnnamedFileTest, IsInvisibleUntilItIsPublished) {
    UnnamedFile file = unnamed("new");
    EXPECT_FALSE(fs::exists(target));
    EXPECT_EQ(entriesIn(folder.path()), entriesOfOne());
    EXPECT_TRUE(file.publish(target).ok());
    EXPECT_EQ(contentOf(target), "new");
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_P(UnnamedFileTest, ReplacesAFileAndKeepsTheModeOfTheReplacedFile) {
    writeFile(target, "old");
    fs::permissions(target, fs::perms(0640));
    EXPECT_TRUE(unnamed("new").publish(target).ok());
    EXPECT_EQ(contentOf(target), "new");
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0640));
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_P(UnnamedFileTest, GivesANewFileTheModeThatTheUmaskLeaves) {
    const mode_t before = ::umask(027);
    EXPECT_TRUE(unnamed("new").publish(target).ok());
    ::umask(before);
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0640));
}

TEST_P(UnnamedFileTest, IsCopiedWhenItIsPublishedUnderASecondName) {
    UnnamedFile file = unnamed("new");
    EXPECT_TRUE(file.publish(target).ok());
    EXPECT_TRUE(file.publish(folder / "second.wav").ok());
    EXPECT_EQ(contentOf(folder / "second.wav"), "new");
    EXPECT_EQ(fs::hard_link_count(target), 1U);
    EXPECT_EQ(entriesIn(folder.path()), 2);
}

TEST_P(UnnamedFileTest, IsCopiedIntoAnotherFileSystem) {
    struct stat here {};
    struct stat there {};
    ASSERT_EQ(::stat(folder.path().c_str(), &here), 0);
    if (::stat("/dev/shm", &there) != 0 || here.st_dev == there.st_dev) {
        GTEST_SKIP() << "/dev/shm does not exist, or is on the same file system as the test folder";
    }
    std::string name = "/dev/shm/sonarith-test-XXXXXX";
    ASSERT_NE(::mkdtemp(name.data()), nullptr);
    const fs::path other = name;
    const std::string content(3'000'000, 'x'); // fills the copy buffer several times
    UnnamedFile file = unnamed(content);
    EXPECT_TRUE(file.publish(other / "fresh").ok());
    EXPECT_EQ(contentOf(other / "fresh"), content);
    writeFile(other / "old", "old");
    EXPECT_TRUE(file.publish(other / "old").ok());
    EXPECT_EQ(contentOf(other / "old"), content);
    EXPECT_EQ(entriesIn(other), 2);
    fs::remove_all(other);
}

TEST_P(UnnamedFileTest, DisappearsIfItIsNotPublished) {
    {
        const UnnamedFile file = unnamed("new");
        const UnnamedFile other = unnamed("other");
        EXPECT_EQ(entriesIn(folder.path()), 2 * entriesOfOne())
            << "neither file may be treated as a leftover of a killed process";
    }
    EXPECT_EQ(entriesIn(folder.path()), 0);
}

TEST_P(UnnamedFileTest, IsNotCopiedWhenItIsPublishedForTheFirstTime) {
    for (const bool replaces : {false, true}) {
        const fs::path path = folder / (replaces ? "old.wav" : "fresh.wav");
        if (replaces) {
            writeFile(path, "old");
        }
        UnnamedFile file = unnamed("new");
        struct stat made {};
        ASSERT_EQ(::fstat(file.descriptor().get(), &made), 0);
        EXPECT_TRUE(file.publish(path).ok());
        EXPECT_EQ(inodeOf(path), made.st_ino);
    }
}

TEST_P(UnnamedFileTest, IsNoLongerClaimedAfterItIsPublished) {
    UnnamedFile file = unnamed("new");
    EXPECT_TRUE(file.publish(target).ok());
    EXPECT_TRUE(claim(FileDescriptor(::open(target.c_str(), O_RDWR | O_CLOEXEC))));
}

TEST_P(UnnamedFileTest, CanStillBePublishedAfterAFailure) {
    fs::create_directory(target);
    UnnamedFile file = unnamed("new");
    EXPECT_FALSE(file.publish(target).ok());
    EXPECT_TRUE(file.publish(folder / "other.wav").ok());
    EXPECT_EQ(contentOf(folder / "other.wav"), "new");
    EXPECT_EQ(entriesIn(folder.path()), 2);
}

TEST_P(UnnamedFileTest, CanBePublishedAfterItsHiddenNameWasRemoved) {
    UnnamedFile file = unnamed("new");
    for (const auto& entry : fs::directory_iterator(folder.path())) {
        fs::remove(entry.path());
    }
    EXPECT_TRUE(file.publish(target).ok());
    EXPECT_EQ(contentOf(target), "new");
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_P(UnnamedFileTest, IsKeptIfAnotherFileIsCreatedAfterAFailedRename) {
    writeFile(target, "old");
    fs::permissions(folder.path(), fs::perms(0777));
    fs::permissions(target, fs::perms(0666));
    EXPECT_EQ(test::runUnprivileged([&] {
                  UnnamedFile file = unnamed("new");
                  if (!test::refuseRenames()) {
                      return 1;
                  }
                  const bool failed =
                      numberOf(file.publish(target)) == ErrorNumber::deviceInputOutput;
                  const bool created = create(folder.path()).ok(); // deletes leftovers first
                  const bool kept = test::hiddenEntriesIn(folder.path()) == 1;
                  return (failed ? 0 : 2) + (created && kept ? 0 : 4);
              }),
              0);
    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_P(UnnamedFileTest, CanBePublishedOnAFileSystemWithoutLocks) {
    fs::permissions(folder.path(), fs::perms(0777));
    EXPECT_EQ(test::runUnprivileged([&] {
                  if (!test::refuseFileLocks()) {
                      return 1;
                  }
                  UnnamedFile file = unnamed("new");
                  UnnamedFile other = unnamed("other");
                  return file.publish(target).ok() && other.publish(target).ok() ? 0 : 2;
              }),
              0);
    EXPECT_EQ(contentOf(target), "other");
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_P(UnnamedFileTest, CanBePublishedOnAFileSystemWithoutLinks) {
    fs::permissions(folder.path(), fs::perms(0777));
    EXPECT_EQ(test::runUnprivileged([&] {
                  UnnamedFile file = unnamed("new");
                  return test::refuseLinks() && file.publish(target).ok() ? 0 : 1;
              }),
              0);
    EXPECT_EQ(contentOf(target), "new");
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_P(UnnamedFileTest, FollowsASymbolicLink) {
    writeFile(folder / "real", "old");
    fs::create_symlink("real", target);
    EXPECT_TRUE(unnamed("new").publish(target).ok());
    EXPECT_TRUE(fs::is_symlink(target));
    EXPECT_EQ(contentOf(folder / "real"), "new");
}

TEST_P(UnnamedFileTest, AcceptsNamesThatAreNotValidUtf8) {
    const fs::path odd = folder / "tr\xE4"
                                  "ck\xFF.wav";
    EXPECT_TRUE(unnamed("new").publish(odd).ok());
    EXPECT_EQ(contentOf(odd), "new");
}

TEST_P(UnnamedFileTest, AcceptsTheLongestNameAndRejectsALongerName) {
    UnnamedFile file = unnamed("new");
    const fs::path longest = folder / std::string(255, 'n');
    EXPECT_TRUE(file.publish(longest).ok());
    EXPECT_TRUE(file.publish(longest).ok())
        << "a file with the longest name must be replaceable: the hidden name must not be longer";
    const Status status = file.publish(folder / std::string(256, 'n'));
    EXPECT_EQ(numberOf(status), ErrorNumber::badFileName);
    EXPECT_THAT(status.error().text, HasSubstr("too long"));
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_P(UnnamedFileTest, IsNotPublishedIntoAFolderThatIsMissing) {
    const Status status = unnamed("new").publish(folder / "no" / "target.wav");
    EXPECT_EQ(numberOf(status), ErrorNumber::pathNotFound);
    EXPECT_THAT(status.error().text, HasSubstr("does not exist"));
}

TEST_P(UnnamedFileTest, IsNotPublishedBelowAFile) {
    writeFile(target, "old");
    const Status status = unnamed("new").publish(target / "below.wav");
    EXPECT_EQ(numberOf(status), ErrorNumber::pathNotFound);
    EXPECT_EQ(contentOf(target), "old");
}

TEST_P(UnnamedFileTest, NeverReplacesAFolder) {
    fs::create_directory(target);
    UnnamedFile file = unnamed("new");
    EXPECT_EQ(numberOf(file.publish(target)), ErrorNumber::pathFileAccess);
    EXPECT_EQ(numberOf(file.publish(target / "")), ErrorNumber::pathFileAccess);
    EXPECT_TRUE(fs::is_directory(target));
    EXPECT_EQ(entriesIn(folder.path()), 1 + entriesOfOne());
}

TEST_P(UnnamedFileTest, NeverReplacesANonRegularFile) {
    ASSERT_EQ(::mkfifo(target.c_str(), 0600), 0);
    UnnamedFile file = unnamed("new");
    EXPECT_EQ(numberOf(file.publish(target)), ErrorNumber::pathFileAccess);
    EXPECT_TRUE(fs::is_fifo(target));
    fs::create_symlink("nowhere", folder / "dangling");
    EXPECT_EQ(numberOf(file.publish(folder / "dangling")), ErrorNumber::pathFileAccess);
    EXPECT_TRUE(fs::is_symlink(folder / "dangling"));
}

TEST_P(UnnamedFileTest, RefusesANameThatContainsANul) {
    const fs::path torn = folder / std::string("one\0two", 7);
    EXPECT_EQ(numberOf(unnamed("new").publish(torn)), ErrorNumber::badFileName);
    EXPECT_EQ(entriesIn(folder.path()), 0);
}

TEST_P(UnnamedFileTest, RefusesAnEmptyName) {
    EXPECT_FALSE(unnamed("new").publish("").ok());
}

TEST_P(UnnamedFileTest, IsNotPublishedWhereNoUserMayWrite) {
    // No user, not even root, can create files in /proc.
    EXPECT_FALSE(unnamed("new").publish("/proc/target.wav").ok());
    EXPECT_FALSE(create("/proc").ok());
}

TEST_P(UnnamedFileTest, LeavesAReadOnlyFolderAndAReadOnlyFileUnchanged) {
    const fs::path closed = folder / "closed";
    const fs::path locked = folder / "locked.wav";
    fs::create_directory(closed);
    writeFile(closed / "kept.wav", "old");
    writeFile(locked, "old");
    fs::permissions(closed / "kept.wav", fs::perms(0666));
    fs::permissions(locked, fs::perms(0444));
    fs::permissions(closed, fs::perms(0555));
    fs::permissions(folder.path(), fs::perms(0777));
    const int exitCode = test::runUnprivileged([&] {
        UnnamedFile file = unnamed("new");
        const auto isDenied = [&](const fs::path& path) {
            return numberOf(file.publish(path)) == ErrorNumber::permissionDenied;
        };
        return (isDenied(closed / "fresh.wav") ? 0 : 1) + (isDenied(closed / "kept.wav") ? 0 : 2) +
               (isDenied(locked) ? 0 : 4) + (create(closed).ok() ? 8 : 0);
    });
    fs::permissions(closed, fs::perms(0777));
    EXPECT_EQ(exitCode, 0);
    EXPECT_EQ(contentOf(closed / "kept.wav"), "old");
    EXPECT_EQ(contentOf(locked), "old");
    EXPECT_EQ(entriesIn(closed), 1);
}

TEST_P(UnnamedFileTest, KeepsTheOldFileIfACopyDoesNotFit) {
    writeFile(target, "old");
    UnnamedFile file = unnamed(std::string(100'000, 'x'));
    EXPECT_TRUE(file.publish(folder / "first.wav").ok());
    fs::permissions(folder.path(), fs::perms(0777));
    fs::permissions(target, fs::perms(0666));
    EXPECT_EQ(test::runUnprivileged([&] {
                  limitFileSizeTo(10'000);
                  return numberOf(file.publish(target)) == ErrorNumber::diskFull ? 0 : 1;
              }),
              0);
    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(entriesIn(folder.path()), 2);
}

TEST_P(UnnamedFileTest, NeedsNoFurtherSpaceWhenItIsFirstPublished) {
    writeFile(target, "old");
    const std::string content(100'000, 'x');
    fs::permissions(folder.path(), fs::perms(0777));
    fs::permissions(target, fs::perms(0666));
    EXPECT_EQ(test::runUnprivileged([&] {
                  UnnamedFile file = unnamed(content);
                  UnnamedFile fresh = unnamed(content);
                  limitFileSizeTo(10'000);
                  return (file.publish(target).ok() ? 0 : 1) +
                         (fresh.publish(folder / "fresh.wav").ok() ? 0 : 2);
              }),
              0);
    EXPECT_EQ(contentOf(target), content);
    EXPECT_EQ(contentOf(folder / "fresh.wav"), content);
    EXPECT_EQ(entriesIn(folder.path()), 2);
}

TEST_P(UnnamedFileTest, IsSavedOnADiskWithoutSpaceForACopy) {
    const int exitCode = test::runInChild([&] {
        if (!test::mountSmallDisk(folder.path().string())) {
            return test::mayNotMount;
        }
        const std::string content(test::smallDiskBytes * 7 / 10, 'x');
        writeFile(target, "old");
        const bool saved = unnamed(content).publish(target).ok() && contentOf(target) == content;
        UnnamedFile second = unnamed("");
        const bool full = ::write(second.descriptor().get(), content.data(), content.size()) <
                          static_cast<ssize_t>(content.size());
        return (saved ? 0 : 1) + (full ? 0 : 2) + (contentOf(target) == content ? 0 : 4);
    });
    if (exitCode == test::mayNotMount) {
        GTEST_SKIP()
            << "this user has no permission to mount a disk; "
               "NeedsNoFurtherSpaceWhenItIsFirstPublished tests the same with a size limit";
    }
    EXPECT_EQ(exitCode, 0);
}

INSTANTIATE_TEST_SUITE_P(Kept, UnnamedFileTest,
                         testing::Values(Concealment::noName, Concealment::hiddenName),
                         [](const auto& way) {
                             return way.param == Concealment::noName ? "WithoutAName"
                                                                     : "UnderAHiddenName";
                         });

} // namespace
} // namespace sonarith::files
