// SPDX-License-Identifier: GPL-3.0-or-later
// Migrates a settings store of an older version to the present version. In older versions the home
// folder had no drive letter of its own; now the home folder has the letter H. The migration
// changes texts of the store. It does not access the files and folders that these texts name.
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

/// Step 1: If the store assigns H: to a mount other than the home folder, that mount gets another
/// letter, in section "Drives" and in the values of the keys `paths`. If no letter is free, these
/// values use the path of the mount point on C: instead.
/// Step 2: Each value of the keys `paths` that names a file or folder in the home folder by another
/// letter becomes a path on H:. The dialogs use H: for files in the home folder, so each file then
/// has one path. Exception to step 2: the path of the home folder itself, without a backslash at
/// the end, keeps its letter. It would become "H:", and the logic could not split "H:" at a
/// backslash.
/// A store that needs no change is not written to. Must be called before a LetterStore or a
/// DriveTable of this store is created. If a call is interrupted, the next call completes the
/// migration.
void moveToHomeLetter(SettingsStore& store, std::string_view home,
                      const std::vector<StoredPath>& paths);

} // namespace sonarith
