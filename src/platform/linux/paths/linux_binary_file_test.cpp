// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/linux_binary_file.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "platform/linux/paths/binary_file_fixture.h"
#include "support/call_judge.h"
#include "support/forked_child.h"
#include "support/killed_at_call.h"
#include "support/refused_call.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using test::BinaryFileTest;
using test::bytesOf;
using test::gibibyte;
using test::MachineWorld;
using test::readFailure;
using test::textAt;

constexpr std::size_t tagBytes = 128; // so few that the kernel writes them in one step

class LinuxBinaryFileTest : public BinaryFileTest<MachineWorld> {
  protected:
    [[nodiscard]] std::string path(const std::string& name) const {
        return (world_.disk() / name).string();
    }
    [[nodiscard]] struct stat statusOf(const std::string& name) const {
        struct stat status {};
        EXPECT_EQ(::stat(path(name).c_str(), &status), 0);
        return status;
    }
    void makeSparse(const std::string& name, std::int64_t bytes) {
        world_.put(name, "");
        fs::resize_file(world_.disk() / name, static_cast<std::uintmax_t>(bytes));
    }
};

TEST_F(LinuxBinaryFileTest, ReadsAndWritesInFilesOf2GiBAndMore) {
    for (const std::int64_t bytes : {2 * gibibyte, 5 * gibibyte}) {
        makeSparse("large.mp3", bytes);
        const auto file = open("large.mp3", FileAccess::readWrite);
        EXPECT_EQ(file->length().value(), bytes);
        EXPECT_TRUE(file->write(bytes - 3, bytesOf("TAGGED")).ok());
        EXPECT_EQ(textAt(*file, bytes - 4, 100), std::string("\0TAGGED", 7));
        EXPECT_EQ(world_.files().fileLength("d:\\large.mp3").value(), bytes + 3);
    }
}

TEST_F(LinuxBinaryFileTest, RefusesWritesThatWouldMakeTheFileTooLarge) {
    const auto file = open("a.mp3", FileAccess::readWrite);
    const std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(file->write(largest - 1, bytesOf("abc")).error().number, ErrorNumber::diskFull);
    EXPECT_EQ(file->write(largest - 3, bytesOf("abc")).error().number, ErrorNumber::diskFull);
    EXPECT_EQ(file->length().value(), 0);
}

TEST_F(LinuxBinaryFileTest, RefusesPipesSocketsAndDevicesWithoutWaiting) {
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0666), 0);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path("socket").size(), sizeof(address.sun_path));
    std::strcpy(address.sun_path, path("socket").c_str());
    ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    fs::create_symlink("/dev/zero", path("device"));
    for (const std::string name : {"pipe", "socket", "device"}) {
        for (const FileAccess access :
             {FileAccess::read, FileAccess::write, FileAccess::readWrite}) {
            EXPECT_EQ(refusal(name, access), ErrorNumber::permissionDenied) << name;
        }
    }
    ::close(socket);
}

TEST_F(LinuxBinaryFileTest, RefusesToOpenAReadOnlyFileForWriting) {
    world_.put("a.mp3", "0123");
    fs::permissions(path("a.mp3"), fs::perms::owner_read | fs::perms::others_read);
    fs::permissions(world_.parent(), fs::perms::all);
    const struct stat before = statusOf("a.mp3");
    for (const FileAccess access : {FileAccess::write, FileAccess::readWrite}) {
        EXPECT_EQ(test::runUnprivileged([&] { return static_cast<int>(refusal("a.mp3", access)); }),
                  static_cast<int>(ErrorNumber::permissionDenied));
    }
    const struct stat after = statusOf("a.mp3");
    EXPECT_EQ(std::memcmp(&before, &after, sizeof(before)), 0);
    EXPECT_EQ(world_.content("a.mp3"), "0123");
}

TEST_F(LinuxBinaryFileTest, WritingKeepsTheLinksAndAttributesOfTheFile) {
    world_.put("a.mp3", std::string(tagBytes * 2, 'x'));
    fs::permissions(path("a.mp3"),
                    fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    fs::create_hard_link(path("a.mp3"), path("second.mp3"));
    fs::create_symlink("a.mp3", path("link.mp3"));
    const bool attributes = ::setxattr(path("a.mp3").c_str(), "user.comment", "mine", 4, 0) == 0;
    const struct stat before = statusOf("a.mp3");
    {
        const auto file = open("link.mp3", FileAccess::readWrite);
        EXPECT_TRUE(file->write(tagBytes, bytesOf(std::string(tagBytes, 't'))).ok());
    }
    const struct stat after = statusOf("a.mp3");
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_EQ(after.st_nlink, before.st_nlink);
    EXPECT_EQ(after.st_size, before.st_size);
    EXPECT_TRUE(fs::is_symlink(path("link.mp3")));
    EXPECT_EQ(world_.content("second.mp3"),
              std::string(tagBytes, 'x') + std::string(tagBytes, 't'));
    if (attributes) { // not every file system supports extended attributes
        std::array<char, 8> value{};
        EXPECT_EQ(::getxattr(path("a.mp3").c_str(), "user.comment", value.data(), value.size()), 4);
    }
}

TEST_F(LinuxBinaryFileTest, ReportsAFullDisk) {
    world_.put("a.mp3", "0123");
    fs::permissions(world_.parent(), fs::perms::all);
    fs::permissions(path("a.mp3"), fs::perms::all);
    EXPECT_EQ(test::runUnprivileged([&] {
                  const auto file = open("a.mp3", FileAccess::write);
                  if (file == nullptr || !test::refuseCall(SYS_pwrite64, ENOSPC)) {
                      return 99;
                  }
                  const Status status = file->write(4, bytesOf("tag"));
                  return status.ok() ? 0 : static_cast<int>(status.error().number);
              }),
              static_cast<int>(ErrorNumber::diskFull));
}

TEST_F(LinuxBinaryFileTest, ReportsAReadErrorOfTheDisk) {
    world_.put("a.mp3", "0123");
    fs::permissions(world_.parent(), fs::perms::all);
    EXPECT_EQ(test::runUnprivileged([&] {
                  const auto file = open("a.mp3", FileAccess::read);
                  if (file == nullptr || !test::refuseReads()) {
                      return 99;
                  }
                  return static_cast<int>(readFailure(*file, 0));
              }),
              static_cast<int>(ErrorNumber::deviceInputOutput));
}

// Because of a limit of the file size, the first pwrite() writes only four bytes. The expected
// failure is that of a second pwrite(), which tries to write the rest.
TEST_F(LinuxBinaryFileTest, ContinuesAfterAShortWrite) {
    world_.put("a.mp3", "0123");
    fs::permissions(world_.parent(), fs::perms::all);
    fs::permissions(path("a.mp3"), fs::perms::all);
    EXPECT_EQ(test::runUnprivileged([&] {
                  const auto file = open("a.mp3", FileAccess::write);
                  std::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{tagBytes, tagBytes};
                  if (file == nullptr || ::setrlimit(RLIMIT_FSIZE, &limit) != 0) {
                      return 99;
                  }
                  const Status status = file->write(tagBytes - 4, bytesOf("12345678"));
                  return status.ok() ? 0 : static_cast<int>(status.error().number);
              }),
              static_cast<int>(ErrorNumber::diskFull));
    EXPECT_EQ(world_.content("a.mp3")->substr(tagBytes - 4), "1234");
}

// A tag must be written by one system call, so that another process never reads half of a tag, and
// a killed process never leaves half of a tag.
TEST_F(LinuxBinaryFileTest, WritesATagInOneCall) {
    const std::string old(tagBytes, 'o');
    const std::string tag(tagBytes, 't');
    std::unique_ptr<BinaryFile> file;
    std::vector<std::optional<std::string>> left;
    for (int call = 0; call < 3; ++call) {
        world_.put("a.mp3", old);
        const test::KillOutcome outcome = test::killAtCall(
            call, [&] { file = open("a.mp3", FileAccess::write); },
            [&] { file->write(0, bytesOf(tag)).passOver(); });
        ASSERT_NE(outcome, test::KillOutcome::failed);
        left.push_back(world_.content("a.mp3"));
    }
    // The three processes: killed before the write, killed after it, not killed.
    EXPECT_EQ(left, (std::vector<std::optional<std::string>>{old, tag, tag}));
}

TEST_F(LinuxBinaryFileTest, ReturnsTheModificationTime) {
    world_.put("a.mp3", "0123");
    const std::array<timespec, 2> times{{{1, 0}, {1'000'000'000, 123'456'789}}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path("a.mp3").c_str(), times.data(), 0), 0);
    const auto date = world_.files().fileDate("d:\\a.mp3").value();
    EXPECT_EQ(date.time_since_epoch(), std::chrono::nanoseconds(1'000'000'000'123'456'789));
}

// A pipe replaces the file between the check in LinuxBinaryFile::open() and the system call that
// opens the file. If this call waited for the pipe's other end, the alarm would kill the child
// process, and the test would fail.
TEST_F(LinuxBinaryFileTest, DoesNotWaitIfAPipeReplacesTheFileAfterTheCheck) {
    for (const FileAccess access : {FileAccess::read, FileAccess::write, FileAccess::readWrite}) {
        world_.put("a.mp3", "0123");
        ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0666), 0);
        const std::string file = path("a.mp3");
        const std::string pipe = path("pipe");
        const int answer = test::runInChild([&] {
            constexpr unsigned longestSeconds = 10;
            ::alarm(longestSeconds);
            bool replaced = false;
            bool refused = false;
            const auto verdict = [&](const seccomp_data& call) {
                if (file == reinterpret_cast<const char*>(call.args[1])) {
                    replaced = ::rename(pipe.c_str(), file.c_str()) == 0;
                }
                return test::CallJudge::letThrough;
            };
            const bool ran = test::CallJudge::run({SYS_openat}, verdict, [&](test::CallJudge&) {
                refused = !LinuxBinaryFile::open(file, access).ok();
            });
            return ran && replaced && refused ? 0 : 1;
        });
        EXPECT_EQ(answer, 0) << static_cast<int>(access);
        EXPECT_TRUE(fs::is_fifo(file));
        fs::remove(file);
    }
}

TEST(FileTimeOf, ClampsDatesOutsideTheRangeOfFileTime) {
    constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();
    EXPECT_GT(fileTimeOf({never, 999'999'999}), fileTimeOf({9'000'000'000, 0}));
    EXPECT_LT(fileTimeOf({-never, 0}), fileTimeOf({-9'000'000'000, 0}));
    EXPECT_EQ(fileTimeOf({-1, 500'000'000}).time_since_epoch(), std::chrono::milliseconds(-500));
}

} // namespace
} // namespace sonarith
