// SPDX-License-Identifier: GPL-3.0-or-later
// Creates one object of each class of the playlist editor and connects these objects to the
// editor's window. This struct adds no behaviour.
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
    /// All parameters must outlive this object.
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
