// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the playlist editor, and the main window with the work tree that the editor updates. The
// files are in memory, and time is virtual. Base class of the playlist's tests.
//
//     stored({"c:\\a.mp3", "c:\\b.mp3"});
//     editor.load();
//     choose(0);                                     // a click on the first entry
//     EXPECT_THAT(lines(editor.List2), ElementsAre("c:\\a.mp3", "c:\\b.mp3"));
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "playlist/playlist.h"
#include "support/fake_folder_scanner.h"
#include "support/fake_machine.h"
#include "support/mp3_bytes.h"
#include "worktree/work_tree_jobs.h"

namespace sonarith::test {

struct PlaylistWorld : testing::Test, FakeMachine {
    inline static const std::string pathA = "c:\\music\\a.mp3";
    inline static const std::string pathB = "c:\\music\\b.mp3";
    inline static const std::string pathC = "c:\\music\\c.mp3";

    FakeFileSystem& disk = files;
    ProcessState process;
    Windows windows{platform, process};
    Form1& mainForm = windows.Form1;
    FrmPlayList& editor = windows.frmPlayList;
    FakeFolderScanner scanner;
    WorkTreeJobs jobs{platform, process, windows, scanner};
    Playlist playlist{platform, windows, jobs.adder};

    PlaylistWorld() {
        mainForm.load();
        scanner.files["c:\\music"] = {};
        process.settings.decodePath = "c:\\music";
        process.settings.showFullPath = 1;
        jobs.tree.showfiles();
    }

    /// Writes a playlist to the store, as if an earlier run of the program had saved it.
    void stored(const std::vector<std::string>& paths) {
        store.put("music", "HowMany", std::to_string(paths.size()));
        for (std::size_t i = 0; i < paths.size(); ++i) {
            store.put("music", std::to_string(i + 1), paths[i]);
        }
    }
    /// Writes a playlist to the store, loads the editor and clears the log of the store's writes.
    void open(const std::vector<std::string>& paths) {
        stored(paths);
        editor.load();
        store.writes.clear();
        store.fileWrites = 0;
    }
    /// The entries in the store. The key "HowMany" holds their number.
    [[nodiscard]] std::vector<std::string> inStore() const {
        std::vector<std::string> all;
        const int count = std::stoi(store.held("music", "HowMany").value_or("0"));
        for (int i = 1; i <= count; ++i) {
            all.push_back(store.held("music", std::to_string(i)).value_or("missing"));
        }
        return all;
    }
    /// Simulates the user's click on an entry.
    void choose(int index) { editor.List2.choose(index); }
    /// Makes an entry the current entry without running the handler of the click.
    void select(int index) {
        const auto handler = std::exchange(editor.List2.onClick, nullptr);
        EXPECT_TRUE(editor.List2.setListIndex(index).ok());
        editor.List2.onClick = handler;
    }
    /// Adds an MP3 file of 48,000 bytes (3 seconds) with a tag: `title`, and `path` as the artist.
    void addMp3(const std::string& path, const std::string& title) {
        disk.addFile(path,
                     Mp3Bytes(48'000).header(1, commonHeader).end(tagOf(title, path)).content);
    }
    [[nodiscard]] static std::vector<std::string> lines(const ListBox& list) {
        std::vector<std::string> all;
        for (int i = 0; i < list.listCount(); ++i) {
            all.push_back(list.list(i));
        }
        return all;
    }
    /// The texts of Text4(1) to Text4(8).
    [[nodiscard]] std::vector<std::string> boxes4() {
        std::vector<std::string> all;
        for (std::size_t number = 1; number <= 8; ++number) {
            all.push_back(editor.Text4(number).text());
        }
        return all;
    }
};

} // namespace sonarith::test
