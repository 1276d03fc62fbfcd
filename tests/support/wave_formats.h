// SPDX-License-Identifier: GPL-3.0-or-later
// Creates PCM formats for tests of the wave input. The dependent fields are computed, so the
// formats are consistent.
#pragma once

#include <cstdint>

#include "platform/wave_input.h"

namespace sonarith::fakes {

inline WaveFormat pcmFormat(unsigned channels, std::uint32_t rate, unsigned bits) {
    const unsigned block = channels * bits / 8;
    return {1,
            static_cast<std::uint16_t>(channels),
            rate,
            rate * block,
            static_cast<std::uint16_t>(block),
            static_cast<std::uint16_t>(bits),
            0};
}

} // namespace sonarith::fakes
