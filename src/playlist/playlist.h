// SPDX-License-Identifier: GPL-3.0-or-later
// The playlist editor's jobs, each wired to its window. No behaviour lives here.
#pragma once

#include "forms/windows.h"
#include "platform/platform.h"
#include "playlist/entry_clicks.h"
#include "playlist/file_operations.h"
#include "playlist/header_display.h"
#include "playlist/playlist_entries.h"
#include "playlist/tag_editor.h"
#include "worktree/add_file.h"

namespace sonarith {

struct Playlist {
    /// All outlive this.
    Playlist(const Platform& platform, Windows& windows, FileAdder& adder)
        : entries(platform, windows.frmPlayList),
          clicks(windows, adder),
          header(platform, windows.frmPlayList),
          tag(platform, windows.frmPlayList),
          operations(platform, windows.frmPlayList, entries) {}

    PlaylistEntries entries;
    EntryClicks clicks;
    HeaderDisplay header;
    TagEditor tag;
    FileOperations operations;
};

} // namespace sonarith
