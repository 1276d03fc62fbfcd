// SPDX-License-Identifier: GPL-3.0-or-later
// Looks up the modes that TRACK and ZERO statements of a cdrdao TOC name: the kind of track and the
// size of a sector in the file. It parses no statement.
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
