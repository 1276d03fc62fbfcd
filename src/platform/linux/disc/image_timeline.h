// SPDX-License-Identifier: GPL-3.0-or-later
// Puts a layout on the disc's time line, now that the lengths of its files are known, and tells in
// words what the files are short of. It reads no file.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/disc/disc.h"
#include "platform/linux/disc/image_layout.h"
#include "platform/result.h"

namespace sonarith::disc {

/// Sound that is there to be read. What no stretch covers is silent.
struct SoundStretch {
    std::int64_t start = 0; ///< on the time line, in frames
    std::int64_t frames = 0;
    std::size_t file = 0;    ///< index in ImageLayout::files
    std::int64_t offset = 0; ///< in bytes, as in Segment
};

/// Sound that is stated and not there: it reads as silence.
struct LostStretch {
    std::int64_t start = 0; ///< on the time line, in frames
    std::int64_t frames = 0;
};

struct ImageTimeline {
    Table table;
    std::vector<SoundStretch> sound; ///< by rising start, none overlapping another
    std::vector<LostStretch> lost;   ///< likewise
    std::string remark;              ///< which files are shorter than stated; empty: none
};

/// How many sectors from `first` up to `end` have something of what is lost in them.
[[nodiscard]] std::int64_t lostSectors(const ImageTimeline& line, std::int64_t first,
                                       std::int64_t end);

/// `fileBytes` holds the length of each of the layout's files: of a WAVE, of its samples. A track
/// whose file ends early keeps its stated length; one that has no stated length and begins beyond
/// its file's end keeps its place with the shortest length a track may have. Errors: nothing at all
/// is there; more than a disc can hold. `sheet` is the name to call the sheet by.
[[nodiscard]] Result<ImageTimeline> layOnLine(std::string_view sheet, const ImageLayout& layout,
                                              std::span<const std::int64_t> fileBytes);

} // namespace sonarith::disc
