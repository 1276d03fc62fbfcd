// SPDX-License-Identifier: GPL-3.0-or-later
// Looks up a mode by the name that a TRACK or ZERO statement of a cdrdao TOC contains. A mode
// defines the kind of a track and the size of its sectors in the image's file. Nothing here parses
// a statement.
#pragma once

#include <string_view>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {

struct TocMode {
    std::string_view name;
    TrackKind kind = TrackKind::audio;
    int sectorBytes = bytesPerSector;
};

/// The mode that `name` names, ignoring the case of ASCII letters; null if there is no such mode.
[[nodiscard]] const TocMode* tocModeNamed(std::string_view name);

} // namespace sonarith::disc
