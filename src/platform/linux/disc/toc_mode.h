// SPDX-License-Identifier: GPL-3.0-or-later
// The modes of tracks and ZERO statements in a cdrdao TOC: their meaning and the sector size in a
// file. It parses no statement.
#pragma once

#include <string_view>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {

struct TocMode {
    std::string_view name;
    TrackKind kind = TrackKind::audio;
    int sectorBytes = bytesPerSector;
};

/// Case-insensitive for ASCII letters; null if the mode does not exist.
[[nodiscard]] const TocMode* tocModeNamed(std::string_view name);

} // namespace sonarith::disc
