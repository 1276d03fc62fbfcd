// SPDX-License-Identifier: GPL-3.0-or-later
// Brings a settings store that was written before the home had its letter up to date. It works on
// texts alone and looks at no disk.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/settings_store.h"

namespace sonarith {

/// A key of the store whose value is a path of the logic.
struct StoredPath {
    std::string section;
    std::string key;
};

/// A mount to which the store gave H: gets another letter, in the table of drives and in `paths`.
/// Then those of `paths` that lead into the home by another drive's letter get H:, so that one file
/// has one path: the dialogs name files of the home by H:. The home itself, as the last name of a
/// path, keeps its letter, since the logic parts a path at its last backslash. A store that needs
/// none of this is not written to. To be called before DriveTable is made; interrupted, it goes on
/// at the next call.
void moveToHomeLetter(SettingsStore& store, std::string_view home,
                      const std::vector<StoredPath>& paths);

} // namespace sonarith
