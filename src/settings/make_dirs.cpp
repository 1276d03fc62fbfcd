// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/make_dirs.h"

#include <cstddef>

namespace sonarith {

namespace {

bool makeChain(const std::string& path, FileSystem& fileSystem) {
    if (!fileSystem.changeDrive(path).ok()) {
        return false;
    }
    fileSystem.changeFolder("\\").passOver();
    // The third character counts as the backslash after the drive, whatever character it is.
    std::size_t start = 2;
    for (std::size_t end = path.find('\\', start + 1); end != std::string::npos;
         end = path.find('\\', start + 1)) {
        const std::string name = path.substr(start + 1, end - start - 1);
        const Status made = fileSystem.makeFolder(name);
        // The error "path/file access" is ignored: it means that the name exists. If a file has
        // this name, changeFolder() fails.
        if (!made.ok() && made.error().number != ErrorNumber::pathFileAccess) {
            return false;
        }
        if (!fileSystem.changeFolder(name).ok()) {
            return false;
        }
        start = end;
    }
    return true;
}

} // namespace

bool MakeDirs(const std::string& path, FileSystem& fileSystem, MessageBoxes& messageBoxes,
              MousePointer& mousePointer) {
    mousePointer.set(Pointer::hourglass);
    const bool closed = !path.empty() && path.back() == '\\';
    const bool made = makeChain(closed ? path : path + "\\", fileSystem);
    if (!made) {
        messageBoxes.show("Error While Attempting to Create Directories on Destination Drive.",
                          BoxIcon::exclamation, BoxButtons::ok, "SETUP");
    }
    mousePointer.set(Pointer::normal);
    return made;
}

} // namespace sonarith
