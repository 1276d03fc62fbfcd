// SPDX-License-Identifier: GPL-3.0-or-later
// Keeps the playlist in a list of the form, and a copy of it in the settings store. Each change of
// the playlist updates the copy, except the change of an entry whose file is renamed.
// entry_clicks.h and file_operations.h handle commands for an entry and its file.
#pragma once

#include <string>
#include <vector>

#include "forms/frm_playlist.h"
#include "platform/platform.h"
#include "platform/result.h"
#include "platform/settings_store.h"

namespace sonarith {

/// The section of the settings store that contains the playlist: the number of entries under
/// "HowMany", and their paths under "1", "2" and so on.
inline constexpr const char* playlistSection = "music";

/// The keys "1", "2" and so on, up to the stored number of entries. A key without a stored entry is
/// included, but the result ends after 100,000 such keys. The value of an existing entry is a path
/// of the logic (drive letter, backslashes).
[[nodiscard]] std::vector<std::string> playlistPathKeys(const SettingsStore& store);

class PlaylistEntries {
  public:
    /// Sets the handlers of the form's load, of Command20 and of Command6. Both parameters must
    /// outlive this object.
    PlaylistEntries(const Platform& platform, FrmPlayList& form);
    PlaylistEntries(const PlaylistEntries&) = delete;
    PlaylistEntries& operator=(const PlaylistEntries&) = delete;

    void Form_Load();
    /// Adds the stored entries to the list. An entry whose key is missing becomes the line "Empty".
    void LoadPlayList();

    /// "Add to PlayList": adds the path in the box Text5 unless an entry, used as a pattern,
    /// matches the path.
    void Command20_Click();
    /// "Delist": removes the selected entry, and every other entry whose last three characters are
    /// neither "mp3" nor "MP3". Without a selection it removes only those other entries.
    void Command6_Click();
    /// As "Delist", but without a selection it removes nothing and fails: subscriptOutOfRange.
    Status CompactPlayList();

  private:
    enum class Counting { atEachRound, atTheEnd };

    Status removeSelected();
    void moveMp3EntriesOut(Counting counting);
    void moveEntriesBack();
    void save(const std::string& key, const std::string& value);
    void saveCount();

    const Platform& platform_;
    FrmPlayList& form_;
};

} // namespace sonarith
