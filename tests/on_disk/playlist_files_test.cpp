// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the playlist editor with real files: kills it at each system call while it writes a tag,
// and lets it use files that are huge, unreadable, not regular or strangely named.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

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
    /// Maps the machine's paths to the paths that the program shows.
    PathMap& paths = world.paths();
    Editor editor{world.files(), store};
};

TEST_F(PlaylistFilesTest, AKillAtAnySystemCallOfATagWriteLeavesTheOldOrTheNewTag) {
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
    EXPECT_GT(leftOld, 1) << "at least two kills must come before the write";
    // The last run counts, too, although it has no kill.
    EXPECT_GT(leftWritten, 1) << "at least one kill must come after the write";
}

TEST_F(PlaylistFilesTest, PipesFoldersDevicesAndBrokenLinksHaveNoDataAndDoNotBlock) {
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

// Deliberate: the delete button treats pipes, folders and devices like missing files. The editor
// asks no question, shows the message that the file has been deleted, and deletes nothing.
TEST_F(PlaylistFilesTest, PipesFoldersAndDevicesAreReportedAsDeletedButAreNotDeleted) {
    ASSERT_EQ(::mkfifo((world.disk() / "pipe.mp3").c_str(), 0666), 0);
    world.makeFolder("folder.mp3");
    fs::create_symlink("/dev/zero", world.disk() / "device.mp3");
    for (const std::string name : {"pipe.mp3", "folder.mp3", "device.mp3"}) {
        editor.machine.boxes.shown.clear();
        editor.form.Text5.setText("d:\\" + name);
        editor.form.Command10.click();
        EXPECT_THAT(editor.machine.boxes.shown,
                    ElementsAre(ShownBox{"d:\\" + name + " has been Deleted"}));
        EXPECT_TRUE(fs::exists(world.disk() / name)) << name;
    }
}

TEST_F(PlaylistFilesTest, AFileWithAnyValidNameCanBeReadTaggedListedRenamedAndDeleted) {
    for (const std::string name :
         {"a [live].mp3", "[.mp3", "star*.mp3", "what?.mp3", "no. #1.mp3", "\"quoted\" 'too'.mp3",
          "  blanks before.mp3", "Z\xc3\xbcrich \xe4\xb8\xad\xe5\x9b\xbd.mp3",
          "no text \xff\xfe\xfc.mp3", "%41,;=|<>.mp3"}) {
        SCOPED_TRACE(name);
        world.put(name, mp3("Title"));
        const auto shown = paths.logicPathOf((world.disk() / name).string());
        editor.machine.boxes.shown.clear();
        editor.form.Text5.setText(shown);
        editor.form.cmdHdr2.click();
        EXPECT_EQ(editor.form.Text4(2).text(), "Title");
        EXPECT_EQ(editor.form.List1.listCount(), 12);
        editor.form.cmdTag.click();
        EXPECT_EQ(world.content(name),
                  Mp3Bytes(48'000).header(1, commonHeader).end(tagOf("Artist", "Title")).content);
        editor.form.Command20.click();
        EXPECT_EQ(editor.lines(), std::vector<std::string>{shown});
        editor.form.unload();
        editor.form.load();
        EXPECT_EQ(editor.lines(), std::vector<std::string>{shown});
        editor.form.Text5.setText(shown);
        editor.machine.dialog.choices = {shown + " 2.mp3"};
        editor.form.Command2.click();
        EXPECT_FALSE(fs::exists(world.disk() / name));
        EXPECT_TRUE(fs::exists(world.disk() / (name + " 2.mp3")));
        editor.form.Text5.setText(shown + " 2.mp3");
        editor.machine.boxes.answers = {BoxAnswer::yes};
        editor.form.Command10.click();
        EXPECT_FALSE(fs::exists(world.disk() / (name + " 2.mp3")));
        store = {};
        editor.form.unload();
        editor.form.load();
    }
}

// The kernel accepts paths of at most 4,095 bytes.
TEST_F(PlaylistFilesTest, AFileWithTheLongestPathIsReadAndALongerPathCountsAsAMissingFile) {
    fs::path folder = world.disk();
    while (folder.string().size() + 201 < 4'080) {
        folder /= std::string(200, 'f');
        fs::create_directory(folder);
    }
    const auto named = [&](std::size_t bytes) {
        return folder / (std::string(bytes - folder.string().size() - 5, 'n') + ".mp3");
    };
    const fs::path longest = named(4'095);
    std::ofstream(longest, std::ios::binary) << mp3("Title");
    ASSERT_TRUE(fs::exists(longest));
    editor.form.Text5.setText(paths.logicPathOf(longest.string()));
    editor.form.cmdHdr2.click();
    EXPECT_EQ(editor.form.Text4(2).text(), "Title");
    EXPECT_THAT(editor.machine.boxes.shown, IsEmpty());

    for (const std::string& path :
         {"d:\\" + std::string(4'089, 'x') + ".mp3", paths.logicPathOf(named(4'096).string()),
          "d:\\" + std::string(100'000, 'x') + ".mp3"}) {
        editor.machine.boxes.shown.clear();
        editor.form.Text5.setText(path);
        editor.form.cmdTag.click();
        editor.form.Command10.click();
        editor.machine.dialog.choices = {"d:\\b.mp3"};
        editor.form.Command2.click();
        editor.form.cmdHdr2.click();
        EXPECT_THAT(editor.machine.boxes.texts(),
                    ElementsAre(path + " has been Deleted", "File contains no data"));
        editor.form.Text5.setText(longest.string());
    }
    EXPECT_TRUE(fs::exists(longest));
}

TEST_F(PlaylistFilesTest, ATagIsWrittenEvenIfTheFileWasRemovedOrTruncatedAfterReading) {
    world.put("a.mp3", mp3("Title"));
    const fs::path file = world.disk() / "a.mp3";
    // The file is removed between the analysis and the display.
    editor.machine.loop.atYield(1, [&] { fs::remove(file); });
    read("a.mp3");
    EXPECT_EQ(editor.form.Text4(2).text(), "Title");
    // When the tag is written, the file is missing or has become shorter.
    editor.form.cmdTag.click();
    EXPECT_EQ(world.content("a.mp3"), tagOf("Artist", "Title"));
    for (const std::uintmax_t bytes : {50U, 1000U}) {
        world.put("a.mp3", mp3("Title"));
        read("a.mp3");
        fs::resize_file(file, bytes);
        const std::string before = world.content("a.mp3").value();
        editor.form.cmdTag.click();
        EXPECT_EQ(world.content("a.mp3"),
                  before.substr(0, bytes < 128 ? 0 : bytes - 128) + tagOf("Artist", "Title"));
    }
    EXPECT_THAT(editor.machine.boxes.shown, IsEmpty());
}

TEST_F(PlaylistFilesTest, AReadOnlyFileInAReadOnlyFolderIsReadButNotTaggedRenamedOrDeleted) {
    world.put("a.mp3", mp3("Title"));
    fs::permissions(world.disk() / "a.mp3",
                    fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    const fs::perms walkable = fs::perms::owner_read | fs::perms::owner_exec |
                               fs::perms::group_read | fs::perms::group_exec |
                               fs::perms::others_read | fs::perms::others_exec;
    fs::permissions(world.parent(), walkable | fs::perms::owner_write);
    fs::permissions(world.disk(), walkable);
    EXPECT_EQ(test::runUnprivileged([&] {
                  read("a.mp3");
                  if (editor.form.Text4(2).text() != "Title") {
                      return 1;
                  }
                  editor.form.Text4(1).setText("Other");
                  editor.form.cmdTag.click();
                  editor.machine.dialog.choices = {"d:\\b.mp3"};
                  editor.form.Command2.click();
                  editor.machine.boxes.answers = {BoxAnswer::yes};
                  editor.form.Command10.click();
                  return editor.machine.boxes.shown.size() == 2 ? 0 : 2;
              }),
              0);
    // Without write permission, the fixture could not delete the folder.
    fs::permissions(world.disk(), fs::perms::owner_all);
    EXPECT_EQ(world.content("a.mp3"), mp3("Title"));
}

TEST_F(PlaylistFilesTest, AFileWithoutReadPermissionHasNoData) {
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

TEST_F(PlaylistFilesTest, TheTagOfAHugeFileIsShownWithTheHeaderOfThePreviousFile) {
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
        EXPECT_EQ(editor.form.Text4(2).text(), "Huge") << "the tag of the huge file must be read";
        EXPECT_EQ(editor.form.Text4(8).text(), std::to_string(bytes) + " bytes");
        EXPECT_EQ(editor.form.List1.list(0), "Bitrate            128");
    }
    EXPECT_THAT(editor.machine.boxes.shown, IsEmpty());
}

/// How many bytes this thread has read from files, pipes and sockets; an empty optional if the
/// system does not count them.
std::optional<std::uint64_t> bytesRead() {
    std::ifstream counts("/proc/thread-self/io");
    std::string name;
    std::uint64_t bytes = 0;
    return counts >> name >> bytes && name == "rchar:" ? std::optional(bytes) : std::nullopt;
}

TEST_F(PlaylistFilesTest, AtMost8KibibytesAreReadToShowTheDataOfAFileOfAnyLength) {
    if (!bytesRead()) {
        GTEST_SKIP() << "this system does not count the bytes that a thread reads";
    }
    const std::uint64_t begin = bytesRead().value();
    const std::uint64_t ofTheCount = bytesRead().value() - begin;
    for (const std::int64_t bytes :
         {std::int64_t{100'000}, std::int64_t{200'000'000}, 5 * test::gibibyte}) {
        world.put("a.mp3", Mp3Bytes(4000).header(1, commonHeader).content);
        fs::resize_file(world.disk() / "a.mp3", static_cast<std::uintmax_t>(bytes));
        editor.form.Text5.setText("d:\\a.mp3");
        const std::uint64_t before = bytesRead().value();
        editor.form.cmdHdr2.click();
        const std::uint64_t taken = bytesRead().value() - before - ofTheCount;
        EXPECT_EQ(editor.form.Text4(8).text(), std::to_string(bytes) + " bytes");
        EXPECT_LE(taken, 8192U) << "for a file of " << bytes << " bytes";
        EXPECT_GE(taken, 256U) << "the bytes that the editor reads must be counted";
    }
}

// The editor removes the blanks around a path, so for the file "a.mp3 " it uses the path of a file
// "a.mp3", which does not exist.
TEST_F(PlaylistFilesTest, AFileWhoseNameEndsWithABlankIsNeitherReadNorRenamedNorDeleted) {
    world.put("a.mp3 ", mp3("Title"));
    read("a.mp3 ");
    EXPECT_THAT(editor.machine.boxes.texts(), ElementsAre("File contains no data"));
    editor.form.Text5.setText("d:\\a.mp3 ");
    editor.machine.dialog.choices = {"d:\\b.mp3"};
    editor.form.Command2.click();
    editor.form.Text5.setText("d:\\a.mp3 ");
    editor.machine.boxes.answers = {BoxAnswer::yes};
    editor.form.Command10.click();
    EXPECT_EQ(world.content("a.mp3 "), mp3("Title"));
    EXPECT_FALSE(fs::exists(world.disk() / "b.mp3"));
    EXPECT_FALSE(fs::exists(world.disk() / "a.mp3"));
}

} // namespace
} // namespace sonarith
