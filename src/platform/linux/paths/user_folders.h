// SPDX-License-Identifier: GPL-3.0-or-later
// The folders that the account and its desktop name for a user's files, as machine paths. It makes
// none of them, and does not look at the home folder, which may lie on a server that is gone.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sonarith {

/// $HOME if it is an absolute path, else the account's; "/" for an account without one. It need not
/// exist.
[[nodiscard]] std::string homeFolder();

/// $XDG_DATA_HOME if it is an absolute path, else .local/share in the user's home.
[[nodiscard]] std::string userDataFolder();

/// XDG_MUSIC_DIR in the text of a user-dirs.dirs file (format: user-dirs.dirs(5)): a path in double
/// quotes that begins with $HOME or a slash, with backslashes before characters that mean something
/// to the shell. Of several lines the last good one counts; a line of any other form counts as
/// absent.
[[nodiscard]] std::optional<std::string> musicFolderIn(std::string_view userDirs,
                                                       const std::string& home);

/// The user's folder for music: what user-dirs.dirs in $XDG_CONFIG_HOME (if that is an absolute
/// path) or in ~/.config names, else "Music" in the home. A folder with a dot in its path below the
/// home, or anywhere if it lies elsewhere, is passed over: the search for audio files takes a
/// file's extension from the first dot of the whole path, and would never find one there.
[[nodiscard]] std::string musicFolder();

} // namespace sonarith
