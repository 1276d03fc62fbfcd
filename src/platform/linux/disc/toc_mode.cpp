// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/toc_mode.h"

#include <algorithm>
#include <array>

#include "platform/linux/disc/sheet_text.h"

namespace sonarith::disc {

namespace {

constexpr std::array<TocMode, 8> modes = {{{"AUDIO", TrackKind::audio, bytesPerSector},
                                           {"MODE1", TrackKind::data, 2048},
                                           {"MODE1_RAW", TrackKind::data, bytesPerSector},
                                           {"MODE2", TrackKind::data, 2336},
                                           {"MODE2_FORM1", TrackKind::data, 2048},
                                           {"MODE2_FORM2", TrackKind::data, 2324},
                                           {"MODE2_FORM_MIX", TrackKind::data, 2336},
                                           {"MODE2_RAW", TrackKind::data, bytesPerSector}}};

} // namespace

const TocMode* tocModeNamed(std::string_view name) {
    const auto found = std::find_if(modes.begin(), modes.end(),
                                    [&](const TocMode& mode) { return sameWord(mode.name, name); });
    return found == modes.end() ? nullptr : &*found;
}

} // namespace sonarith::disc
