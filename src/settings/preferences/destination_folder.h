// SPDX-License-Identifier: GPL-3.0-or-later
// Splits a stored destination into its parent folder and its own name. Text only: nothing here
// accesses a disk.
#pragma once

#include <string>

namespace sonarith {

/// The destination folder; upper and lower case are as in the stored text.
struct DestinationFolder {
    std::string parent; ///< without a trailing backslash
    std::string name;

    [[nodiscard]] std::string path() const { return parent + "\\" + name; }
    bool operator==(const DestinationFolder&) const = default;
};

/// Splits a stored text at its last backslash; an empty name becomes "WAVFiles". A text without a
/// backslash, or whose only backslash is its first character, means "WAVFiles" in the program
/// folder.
[[nodiscard]] DestinationFolder destinationOf(const std::string& stored,
                                              const std::string& programFolder);

} // namespace sonarith
