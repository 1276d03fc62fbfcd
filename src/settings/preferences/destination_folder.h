// SPDX-License-Identifier: GPL-3.0-or-later
// Splits a stored destination into its parent folder and its own name. Text only: nothing here
// accesses a disk.
#pragma once

#include <string>

namespace sonarith {

/// The destination; upper and lower case are as in the stored text.
struct DestinationFolder {
    std::string parent; ///< without a trailing backslash
    std::string name;

    [[nodiscard]] std::string path() const { return parent + "\\" + name; }
    bool operator==(const DestinationFolder&) const = default;
};

/// The destination for a stored text: split at its last backslash, with the program folder for an
/// empty parent and "WAVFiles" for an empty name. A text without a backslash, or with a single
/// leading one, means "WAVFiles" in the program folder.
[[nodiscard]] DestinationFolder destinationOf(const std::string& stored,
                                              const std::string& programFolder);

} // namespace sonarith
