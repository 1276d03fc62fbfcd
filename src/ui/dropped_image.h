// SPDX-License-Identifier: GPL-3.0-or-later
// Finds the disc image among files that were dropped from a file manager. Does not open the file.
#pragma once

#include <string>

class QMimeData;

namespace sonarith {

/// The path of the first local file whose name ends with .cue or .toc (in any letter case);
/// empty if there is none. Bytes of the path that are not UTF-8 are kept.
[[nodiscard]] std::string droppedImage(const QMimeData& dropped);

} // namespace sonarith
