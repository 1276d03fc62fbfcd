// SPDX-License-Identifier: GPL-3.0-or-later
// Which folder a stored destination stands for, parted into what it lies in and its own name. Text
// alone: nothing here looks at a disk.
#pragma once

#include <string>

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

} // namespace sonarith
