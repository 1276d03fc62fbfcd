// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the playlist editor's logic on a given file system and settings store. All other
// interfaces are fakes. For tests and benchmarks. playlist_world.h in tests/support/ creates the
// editor on files and settings in memory.
#pragma once

#include <string>
#include <vector>

#include "forms/frm_playlist.h"
#include "playlist/file_operations.h"
#include "playlist/header_display.h"
#include "playlist/playlist_entries.h"
#include "playlist/tag_editor.h"
#include "support/fake_machine.h"

namespace sonarith::test {

struct EditorOver {
    /// Loads the window with the stored list. Both parameters must outlive this object.
    EditorOver(FileSystem& files, SettingsStore& store)
        : platform(machine.platformWith({.store = &store, .files = &files})) {
        form.load();
    }
    [[nodiscard]] std::vector<std::string> lines() const {
        std::vector<std::string> all;
        for (int i = 0; i < form.List2.listCount(); ++i) {
            all.push_back(form.List2.list(i));
        }
        return all;
    }

    test::FakeMachine machine;
    FrmPlayList form{machine.mp3};

    Platform platform;
    PlaylistEntries entries{platform, form};
    HeaderDisplay header{platform, form};
    TagEditor tag{platform, form};
    FileOperations operations{platform, form, entries};
};

} // namespace sonarith::test
