// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/destination_folder.h"

#include <cstddef>

#include "platform/text/unicode.h"
#include "settings/make_dirs.h"

namespace sonarith {

DestinationFolder destinationOf(const std::string& stored, const std::string& programFolder) {
    constexpr const char* defaultName = "WAVFiles";
    const std::size_t last = stored.rfind('\\');
    if (last == std::string::npos || last == 0) {
        return {programFolder, defaultName};
    }
    // An empty parent cannot arise here, since a backslash at the very start was taken above.
    DestinationFolder destination{stored.substr(0, last), stored.substr(last + 1)};
    if (destination.name.empty()) {
        destination.name = defaultName;
    }
    return destination;
}

void createDestinationFolder(const DestinationFolder& destination, SettingsStore& store,
                             FileSystem& fileSystem, MessageBoxes& messageBoxes,
                             MousePointer& mousePointer, EventLoop& loop, AppSettings& settings) {
    const std::string path = destination.path();
    settings.decodePath = lowerCase(path);
    if (MakeDirs(path, fileSystem, messageBoxes, mousePointer)) {
        store.SaveSetting(applicationName, settingsSection, decodePathKey, path);
        loop.yield();
        return;
    }
    messageBoxes.show("Error in creating the path " + path +
                      "  Create a new Destination path using the selection controls");
}

DestinationFolder prepareDestinationFolder(SettingsStore& store, FileSystem& fileSystem,
                                           MessageBoxes& messageBoxes, MousePointer& mousePointer,
                                           EventLoop& loop, AppSettings& settings) {
    // Read with an empty default, not with the loader's: the first start makes "WAVFiles" below the
    // program's folder although the loader names the program's folder itself.
    const std::string stored =
        store.GetSetting(applicationName, settingsSection, decodePathKey, "");
    const DestinationFolder destination = destinationOf(stored, fileSystem.programFolder());
    createDestinationFolder(destination, store, fileSystem, messageBoxes, mousePointer, loop,
                            settings);
    return destination;
}

} // namespace sonarith
