// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/destination_folder.h"

#include <cstddef>

namespace sonarith {

DestinationFolder destinationOf(const std::string& stored, const std::string& programFolder) {
    constexpr const char* defaultName = "WAVFiles";
    const std::size_t last = stored.rfind('\\');
    if (last == std::string::npos || last == 0) {
        return {programFolder, defaultName};
    }
    // The parent cannot be empty here: `last` is at least 1.
    DestinationFolder destination{stored.substr(0, last), stored.substr(last + 1)};
    if (destination.name.empty()) {
        destination.name = defaultName;
    }
    return destination;
}

} // namespace sonarith
