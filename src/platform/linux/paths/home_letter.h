// SPDX-License-Identifier: GPL-3.0-or-later
// Migrates a settings store of an older version, in which the home folder had no drive letter of
// its own, to the present version, in which it has the letter H. The migration changes texts only
// and accesses no disk.
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

/// If the store assigned H: to a mount other than the home folder, that mount gets another letter,
/// in section "Drives" and in the values of `paths`; if no letter is free, these values use the
/// path of the mount point on C: instead. Then each value of `paths` that is below the home folder
/// but has another drive's letter gets H:, so that each file has only one path: the dialogs use H:
/// for files in the home folder. A path of the home folder itself keeps its letter if it has no
/// backslash at the end: it would become "H:" without a backslash, but the logic splits a path at
/// its last backslash. A store that needs no change is not written to. Must be called before
/// DriveTable is created. If a call is interrupted, the next call completes the migration.
void moveToHomeLetter(SettingsStore& store, std::string_view home,
                      const std::vector<StoredPath>& paths);

} // namespace sonarith
