// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the writing of an MP3 file's tag. If a system call other than close() fails, or if the user
// may only read the file, the file must be unchanged. If close() fails, or if the user may only
// write the file, the tag must be written nevertheless. A tag write must change only the tag and
// the times.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <string>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "on_disk/editor_over.h"
#include "platform/linux/paths/binary_file_fixture.h"
#include "support/mp3_bytes.h"
#include "support/refused_call.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using test::commonHeader;
using test::Mp3Bytes;
using test::tagOf;

class TagWriteFailureTest : public testing::Test {
  protected:
    TagWriteFailureTest() {
        world.put("a.mp3", old);
        editor.form.Text5.setText("d:\\a.mp3");
        editor.form.Text4(1).setText("New");
    }
    [[nodiscard]] fs::path file() const { return world.disk() / "a.mp3"; }
    [[nodiscard]] struct stat status() const {
        struct stat status {};
        EXPECT_EQ(::stat(file().c_str(), &status), 0);
        return status;
    }
    [[nodiscard]] std::ptrdiff_t filesOnDisk() const {
        return std::distance(fs::directory_iterator(world.disk()), fs::directory_iterator());
    }

    const std::string old = Mp3Bytes(5000).header(1, commonHeader).end(tagOf("Old")).content;
    const std::string written = Mp3Bytes(5000).header(1, commonHeader).end(tagOf("New")).content;
    test::MachineWorld world;
    test::FakeSettingsStore store;
    test::EditorOver editor{world.files(), store};
};

/// A system call of a tag write, and whether the tag is written if the call fails.
struct RefusedCall {
    const char* name;
    std::uint32_t number;
    bool writes;
};

TEST_F(TagWriteFailureTest, AFailedCloseLeavesTheNewTagAndEveryOtherFailedCallTheOldTag) {
    const std::ptrdiff_t before = filesOnDisk();
    for (const RefusedCall& call :
         {RefusedCall{"openat", SYS_openat, false},
          RefusedCall{"newfstatat", SYS_newfstatat, false},
          RefusedCall{"pwrite64", SYS_pwrite64, false}, RefusedCall{"close", SYS_close, true}}) {
        for (const int error : {EIO, ENOSPC, EDQUOT, EACCES, EPERM, EROFS, ENOMEM, EMFILE, EFBIG,
                                ESTALE, ENODEV, EAGAIN}) {
            SCOPED_TRACE(std::string(call.name) + ": " + std::strerror(error));
            world.put("a.mp3", old);
            EXPECT_EQ(test::runInChild([&] {
                          if (!test::refuseCall(call.number, static_cast<std::uint32_t>(error))) {
                              return 99;
                          }
                          editor.form.cmdTag.click();
                          return static_cast<int>(editor.machine.boxes.shown.size());
                      }),
                      0);
            EXPECT_EQ(world.content("a.mp3"), call.writes ? written : old);
            EXPECT_EQ(filesOnDisk(), before) << "a tag write must not create or remove a file";
        }
    }
    editor.form.cmdTag.click();
    EXPECT_EQ(world.content("a.mp3"), written);
}

TEST_F(TagWriteFailureTest, ATagWriteDoesNotChangeAFileThatMayOnlyBeRead) {
    const bool attributes = ::setxattr(file().c_str(), "user.comment", "mine", 4, 0) == 0;
    fs::create_hard_link(file(), world.parent() / "second.mp3");
    fs::permissions(file(), fs::perms::owner_read | fs::perms::others_read);
    fs::permissions(world.parent(), fs::perms::all);
    fs::permissions(world.disk(), fs::perms::all);
    const struct stat before = status();
    EXPECT_EQ(test::runUnprivileged([&] {
                  editor.form.cmdTag.click();
                  return static_cast<int>(editor.machine.boxes.shown.size());
              }),
              0);
    const struct stat after = status();
    EXPECT_EQ(std::memcmp(&before, &after, sizeof(before)), 0);
    EXPECT_EQ(world.content("a.mp3"), old);
    if (attributes) { // not every file system supports extended attributes
        char value[8];
        EXPECT_EQ(::getxattr(file().c_str(), "user.comment", value, sizeof(value)), 4);
    }
}

TEST_F(TagWriteFailureTest, ATagWriteChangesOnlyTheLast128BytesAndTheTimes) {
    const bool attributes = ::setxattr(file().c_str(), "user.comment", "mine", 4, 0) == 0;
    fs::create_hard_link(file(), world.parent() / "second.mp3");
    fs::permissions(file(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_exec);
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(file().c_str(), 1234, 5678), 0);
    }
    const struct stat before = status();
    editor.form.cmdTag.click();
    const struct stat after = status();
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_nlink, before.st_nlink);
    EXPECT_EQ(after.st_size, before.st_size);
    EXPECT_EQ(world.content("a.mp3"), written);
    EXPECT_EQ(world.content("../second.mp3"), written);
    if (attributes) {
        char value[8];
        EXPECT_EQ(::getxattr(file().c_str(), "user.comment", value, sizeof(value)), 4);
    }
}

TEST_F(TagWriteFailureTest, AFileThatMayOnlyBeWrittenIsTaggedAndReadingItsHeaderShowsAMessage) {
    fs::permissions(file(), fs::perms::owner_write | fs::perms::others_write);
    fs::permissions(world.parent(), fs::perms::all);
    fs::permissions(world.disk(), fs::perms::all);
    EXPECT_EQ(test::runUnprivileged([&] {
                  editor.form.cmdTag.click();
                  editor.form.cmdHdr2.click();
                  return static_cast<int>(editor.machine.boxes.shown.size());
              }),
              1);
    fs::permissions(file(), fs::perms::owner_read);
    EXPECT_EQ(world.content("a.mp3"), written);
}

} // namespace
} // namespace sonarith
