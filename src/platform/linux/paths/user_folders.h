// SPDX-License-Identifier: GPL-3.0-or-later
// Determines the folders that the account and the desktop define for a user's files, as machine
// paths. It creates no folder. If $HOME is not an absolute path, all functions except
// musicFolderIn() look up the account. Only musicFolder() reads a file of the user, usually in the
// home folder. The call hangs if that file is on a server that does not respond.
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

/// The folder that XDG_MUSIC_DIR names in the text of a user-dirs.dirs file (format:
/// user-dirs.dirs(5)), with `home` in place of $HOME; empty if no line has a valid value. A valid
/// value is a path in double quotes that begins with $HOME or a slash, with backslashes before the
/// shell's special characters. If several lines are valid, the last one is used; lines in any other
/// format are ignored.
[[nodiscard]] std::optional<std::string> musicFolderIn(std::string_view userDirs,
                                                       const std::string& home);

/// The user's folder for music: the folder that the file user-dirs.dirs names, else "Music" in the
/// home folder. The file is in $XDG_CONFIG_HOME if that is an absolute path, else in ~/.config. A
/// named folder is ignored if its path contains a dot: the search for audio files takes the text
/// after the first dot of a path as the extension, so it would find no file in such a folder. A dot
/// in the path of the home folder itself does not count, because paths of the logic contain H: in
/// place of the home folder.
[[nodiscard]] std::string musicFolder();

} // namespace sonarith
