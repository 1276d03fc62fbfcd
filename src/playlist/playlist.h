// SPDX-License-Identifier: GPL-3.0-or-later
// The classes of the playlist editor, each wired to its window. It has no behaviour of its own.
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
    /// All must outlive this.
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
