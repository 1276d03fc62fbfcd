// SPDX-License-Identifier: GPL-3.0-or-later
// Chooses and makes the destination folder of captures and conversions at each program start. It is
// the road that the preferences take while no folder of the person's own is being entered; their
// window will call it and show what it returns.
#pragma once

#include <string>

#include "platform/event_loop.h"
#include "platform/file_system.h"
#include "platform/message_box.h"
#include "platform/mouse_pointer.h"
#include "platform/settings_store.h"
#include "settings/app_settings.h"

namespace sonarith {

/// The destination in the case in which it was given.
struct DestinationFolder {
    std::string parent; ///< without a trailing backslash
    std::string name;

    [[nodiscard]] std::string path() const { return parent + "\\" + name; }
    bool operator==(const DestinationFolder&) const = default;
};

/// The destination that the stored text stands for: split at its last backslash, with the program's
/// folder for an empty parent and "WAVFiles" for an empty name. A text without a backslash, or with
/// only one at its very start, stands for "WAVFiles" in the program's folder.
[[nodiscard]] DestinationFolder destinationOf(const std::string& stored,
                                              const std::string& programFolder);

/// Sets `settings.decodePath` to `destination` in lower case and makes the folder. Made: stores its
/// path under "DecodePath" and yields once. Not made: a second box follows that of MakeDirs(), and
/// the store keeps its old value while `decodePath` has the new one.
void createDestinationFolder(const DestinationFolder& destination, SettingsStore& store,
                             FileSystem& fileSystem, MessageBoxes& messageBoxes,
                             MousePointer& mousePointer, EventLoop& loop, AppSettings& settings);

/// createDestinationFolder() for the folder that the store names, which is returned.
DestinationFolder prepareDestinationFolder(SettingsStore& store, FileSystem& fileSystem,
                                           MessageBoxes& messageBoxes, MousePointer& mousePointer,
                                           EventLoop& loop, AppSettings& settings);

} // namespace sonarith
