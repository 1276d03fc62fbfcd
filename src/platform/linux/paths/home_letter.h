// SPDX-License-Identifier: GPL-3.0-or-later
// Migrates a settings store from before the home had its own letter. It works on texts only and
// accesses no disk.
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

/// A mount to which the store assigned H: gets another letter, in the table of drives and in
/// `paths`. Then those of `paths` that lead into the home by another drive's letter get H:, so that
/// each file has one path: the dialogs name files of the home by H:. The home itself, as the last
/// name of a path, keeps its letter, since the logic splits a path at its last backslash. A store
/// that needs no change is not written to. Must be called before DriveTable is created; after an
/// interruption, the next call completes it.
void moveToHomeLetter(SettingsStore& store, std::string_view home,
                      const std::vector<StoredPath>& paths);

} // namespace sonarith
