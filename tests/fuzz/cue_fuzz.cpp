// SPDX-License-Identifier: GPL-3.0-or-later
// Feeds arbitrary text to the reader of CUE sheets and checks that the disc layout of every
// accepted sheet has the properties on which the program relies.
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
