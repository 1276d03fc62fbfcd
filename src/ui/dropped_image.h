// SPDX-License-Identifier: GPL-3.0-or-later
// Finds the disc image among files dropped from a file manager. It does not open the file.
#pragma once

#include <string>

class QMimeData;

namespace sonarith {

/// The path of the first local .cue or .toc file, in any case, byte for byte; empty if there is
/// none.
[[nodiscard]] std::string droppedImage(const QMimeData& dropped);

} // namespace sonarith
