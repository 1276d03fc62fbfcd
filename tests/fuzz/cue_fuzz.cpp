// SPDX-License-Identifier: GPL-3.0-or-later
// Feeds arbitrary text to the reader of CUE sheets and holds what it accepts against what the rest
// of the program relies on.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "layout_invariants.h"
#include "platform/linux/disc/cue_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    sonarith::fuzz::checkLayout(sonarith::disc::parseCue("fuzz.cue", text));
    return 0;
}
