// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the playlist editor with real files: the state of a file after a kill at any system call of
// a tag's write, and files that are huge, unreadable or not regular.
#include <gmock/gmock.h>

#include <filesystem>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

#include "on_disk/editor_over.h"
#include "platform/linux/paths/binary_file_fixture.h"
#include "support/killed_at_call.h"
#include "support/mp3_bytes.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using test::commonHeader;
using test::KillOutcome;
using test::MachineWorld;
using test::Mp3Bytes;
using test::ShownBox;
using test::tagOf;
using testing::ElementsAre;
using testing::IsEmpty;

using Editor = test::EditorOver;

class PlaylistFilesTest : public testing::Test {
  protected:
    static std::string mp3(const std::string& title) {
        return Mp3Bytes(48'000).header(1, commonHeader).end(tagOf(title, "Artist")).content;
    }
    void read(const std::string& name) {
        editor.form.Text5.setText("d:\\" + name);
        editor.form.cmdHdr2.click();
    }

    MachineWorld world;
    test::FakeSettingsStore store;
    Editor editor{world.files(), store};
};

TEST_F(PlaylistFilesTest, AKillAtAnyCallOfATagWriteLeavesTheOldOrTheNewTag) {
    const std::string old = mp3("Old");
    const std::string written =
        Mp3Bytes(48'000).header(1, commonHeader).end(tagOf("New", "", "", "", "", 7)).content;
    int leftOld = 0;
    int leftWritten = 0;
    int call = 0;
    for (KillOutcome outcome = KillOutcome::killed; outcome == KillOutcome::killed; ++call) {
        world.put("a.mp3", old);
        outcome = test::killAtCall(
            call,
            [&] {
                editor.form.Text5.setText("d:\\a.mp3");
                editor.form.Text4(1).setText("New");
                editor.form.Text4(6).setText("7");
            },
            [&] { editor.form.cmdTag.click(); });
        ASSERT_NE(outcome, KillOutcome::failed) << "call " << call;
        const std::string left = world.content("a.mp3").value_or("gone");
        ASSERT_TRUE(left == old || left == written) << "call " << call;
        ++(left == old ? leftOld : leftWritten);
    }
    EXPECT_GT(leftOld, 1) << "while the file is opened and measured";
    EXPECT_GT(leftWritten, 1) << "while it is closed, and without a kill";
}

TEST_F(PlaylistFilesTest, PipesFoldersAndDevicesHaveNoDataAndBlockNothing) {
    ASSERT_EQ(::mkfifo((world.disk() / "pipe.mp3").c_str(), 0666), 0);
    world.makeFolder("folder.mp3");
    fs::create_symlink("/dev/zero", world.disk() / "device.mp3");
    fs::create_symlink("none.mp3", world.disk() / "link.mp3");
    for (const char* name : {"pipe.mp3", "folder.mp3", "device.mp3", "link.mp3"}) {
        editor.machine.boxes.shown.clear();
        read(name);
        EXPECT_THAT(editor.machine.boxes.shown, ElementsAre(ShownBox{"File contains no data"}))
            << name;
        EXPECT_EQ(editor.form.Text5.text(), "");
        editor.form.Text5.setText(std::string("d:\\") + name);
        editor.form.cmdTag.click();
    }
    EXPECT_TRUE(fs::is_fifo(world.disk() / "pipe.mp3"));
    EXPECT_TRUE(fs::is_empty(world.disk() / "folder.mp3"));
}

TEST_F(PlaylistFilesTest, AFileThatMayNotBeReadHasNoData) {
    world.put("a.mp3", mp3("Title"));
    fs::permissions(world.disk() / "a.mp3", fs::perms::none);
    fs::permissions(world.parent(), fs::perms::all);
    EXPECT_EQ(test::runUnprivileged([&] {
                  read("a.mp3");
                  return editor.machine.boxes.shown.size() == 1 &&
                                 editor.form.Text5.text().empty() &&
                                 editor.form.List1.listCount() == 0
                             ? 0
                             : 1;
              }),
              0);
}

TEST_F(PlaylistFilesTest, AHugeFileShowsItsTagAndThePreviousFilesHeader) {
    world.put("before.mp3", mp3("Before"));
    read("before.mp3");
    for (const std::int64_t bytes : {2 * test::gibibyte, 5 * test::gibibyte}) {
        world.put("huge.mp3", Mp3Bytes(4000).header(1, 0xFFFBB000).content);
        const fs::path huge = world.disk() / "huge.mp3";
        fs::resize_file(huge, static_cast<std::uintmax_t>(bytes));
        editor.form.Text4(1).setText("Huge");
        editor.form.Text5.setText("d:\\huge.mp3");
        editor.form.cmdTag.click();
        EXPECT_EQ(fs::file_size(huge), static_cast<std::uintmax_t>(bytes));
        read("huge.mp3");
        EXPECT_EQ(editor.form.Text4(2).text(), "Huge") << "in the field of the title";
        EXPECT_EQ(editor.form.Text4(8).text(), std::to_string(bytes) + " bytes");
        EXPECT_EQ(editor.form.List1.list(0), "Bitrate            128");
    }
    EXPECT_THAT(editor.machine.boxes.shown, IsEmpty());
}

} // namespace
} // namespace sonarith
