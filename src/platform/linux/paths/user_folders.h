// SPDX-License-Identifier: GPL-3.0-or-later
// The folders that the account and its desktop define for a user's files, as machine paths. It
// creates none of them, and does not access the home folder, which may be on a server that does not
// respond.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sonarith {

/// $HOME if it is an absolute path, else the home folder of the account, else "/". The folder need
/// not exist.
[[nodiscard]] std::string homeFolder();

/// $XDG_DATA_HOME if it is an absolute path, else .local/share in the user's home.
[[nodiscard]] std::string userDataFolder();

/// XDG_MUSIC_DIR in the text of a user-dirs.dirs file (format: user-dirs.dirs(5)): a path in double
/// quotes that begins with $HOME or a slash, with backslashes before the shell's special
/// characters. If several lines are valid, the last one is used; lines in any other format are
/// ignored.
[[nodiscard]] std::optional<std::string> musicFolderIn(std::string_view userDirs,
                                                       const std::string& home);

/// The user's folder for music: the one in user-dirs.dirs in $XDG_CONFIG_HOME (if that is an
/// absolute path) or in ~/.config, else "Music" in the home. A folder is skipped if its path below
/// the home contains a dot, or, for a folder outside the home, if its whole path does: the search
/// for audio files takes the text after the first dot of a path as the extension, so it would find
/// no file in such a folder.
[[nodiscard]] std::string musicFolder();

} // namespace sonarith
