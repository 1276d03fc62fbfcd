// SPDX-License-Identifier: GPL-3.0-or-later
// Places the segments of a layout (image_layout.h) on the disc's time line, given the lengths of
// the layout's files, and reports files that are too short. It reads no file.
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

/// A part of the time line whose sound can be read. Parts that no SoundStretch covers are silent.
struct SoundStretch {
    std::int64_t start = 0; ///< on the time line, in frames
    std::int64_t frames = 0;
    std::size_t file = 0;    ///< index in ImageLayout::files
    std::int64_t offset = 0; ///< in bytes, as in Segment
};

/// A part of the time line that is read as silence: according to the image's sheet (CUE or TOC
/// file), a sound file contains the sound of this part, but that file is too short.
struct LostStretch {
    std::int64_t start = 0; ///< on the time line, in frames
    std::int64_t frames = 0;
};

struct ImageTimeline {
    Table table;
    std::vector<SoundStretch> sound; ///< in ascending order of start, without overlaps
    std::vector<LostStretch> lost;   ///< in the same order, without overlaps
    std::string remark;              ///< which files are shorter than stated; empty if none
};

/// How many sectors in [`first`, `end`) contain lost sound.
[[nodiscard]] std::int64_t lostSectors(const ImageTimeline& line, std::int64_t first,
                                       std::int64_t end);

/// `fileBytes` contains the length of each of the layout's files in bytes; for a WAVE file, the
/// length of its samples. A track whose file ends early keeps its stated length. If a track without
/// a stated length would have no sector, it gets the shortest possible length. Errors: the files
/// contain no content of the disc; all tracks together are longer than the longest possible disc.
/// `sheet` is the sheet's name in messages.
[[nodiscard]] Result<ImageTimeline> layOnLine(std::string_view sheet, const ImageLayout& layout,
                                              std::span<const std::int64_t> fileBytes);

} // namespace sonarith::disc
