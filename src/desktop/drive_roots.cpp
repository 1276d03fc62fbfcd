// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/drive_roots.h"

#include <cstddef>

namespace sonarith {

std::vector<std::string> driveRoots(const SystemInformation& machine) {
    constexpr std::size_t firstTry = 10; // characters
    constexpr std::size_t itemLength = 4;
    constexpr std::size_t rootLength = 3;
    constexpr std::size_t mostRoots = 100;
    std::string list(firstTry, ' ');
    std::size_t length = machine.logicalDriveStrings(list, list.size());
    // A result above the size means that the list did not fit. The next list may not fit either,
    // because a drive may be added between two calls.
    while (length > list.size()) {
        list.assign(length, ' ');
        length = machine.logicalDriveStrings(list, list.size());
    }
    list.resize(length);
    std::vector<std::string> roots;
    for (std::size_t start = 0; start + itemLength <= list.size() && roots.size() < mostRoots;
         start += itemLength) {
        roots.push_back(list.substr(start, rootLength));
    }
    return roots;
}

} // namespace sonarith
