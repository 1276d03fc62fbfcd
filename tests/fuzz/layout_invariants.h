// SPDX-License-Identifier: GPL-3.0-or-later
// Checks the properties that the layout of every accepted disc image must have, and ends the
// process if one is violated. Used by the fuzz targets for CUE and TOC files.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/linux/disc/image_layout.h"
#include "platform/linux/disc/image_timeline.h"
#include "platform/linux/disc/sheet_text.h"
#include "platform/result.h"
#include "require.h"

namespace sonarith::fuzz {

/// The length of each of a layout's files, in bytes.
using FileLengths = std::vector<std::int64_t>;

inline void checkTimeline(const disc::ImageTimeline& line, const disc::ImageLayout& layout,
                          const FileLengths& bytes) {
    require(line.table.tracks.size() == layout.tracks.size());
    require(line.table.sectors() <= disc::maxDiscSectors);
    for (const disc::Track& track : line.table.tracks) {
        require(track.sectors > 0);
    }
    std::int64_t end = 0;
    for (const disc::SoundStretch& stretch : line.sound) {
        require(stretch.start >= end && stretch.frames > 0);
        end = stretch.start + stretch.frames;
        require(stretch.offset >= 0 && stretch.file < bytes.size());
        require(stretch.frames <= (bytes[stretch.file] - stretch.offset) / 4);
    }
    require(end <= line.table.sectors() * disc::framesPerSector);
}

inline void checkStructure(const disc::ImageLayout& layout) {
    require(!layout.tracks.empty() && layout.tracks.size() <= disc::maxTracks);
    require(layout.files.size() <= disc::maxImageFiles);
    for (const disc::LayoutTrack& track : layout.tracks) {
        require(!track.segments.empty());
        for (const disc::Segment& segment : track.segments) {
            require(segment.offset >= 0 && segment.sectorBytes > 0);
            require(segment.frames > 0 || segment.frames == disc::toFileEnd);
            require(segment.lastSectorLacks >= 0 && segment.lastSectorLacks < segment.sectorBytes);
            require(segment.kind == disc::SegmentKind::silence ||
                    segment.file < layout.files.size());
        }
    }
}

/// For each file, the shortest length at which it is complete. A segment that extends to the end of
/// its file needs one sector; other segments need the length that the layout states.
inline FileLengths requiredLengths(const disc::ImageLayout& layout) {
    FileLengths bytes(layout.files.size(), 0);
    for (const disc::LayoutTrack& track : layout.tracks) {
        for (const disc::Segment& segment : track.segments) {
            if (segment.kind == disc::SegmentKind::silence) {
                continue;
            }
            const bool stated = segment.frames != disc::toFileEnd;
            const std::int64_t length =
                !stated ? segment.sectorBytes
                : segment.kind == disc::SegmentKind::sound
                    ? segment.frames * 4
                    : segment.frames / disc::framesPerSector * segment.sectorBytes -
                          segment.lastSectorLacks;
            bytes[segment.file] = std::max(bytes[segment.file], segment.offset + length);
        }
    }
    return bytes;
}

inline void checkLayout(const Result<disc::ImageLayout>& parsed) {
    if (!parsed.ok()) {
        require(!parsed.error().text.empty());
        return;
    }
    const disc::ImageLayout& layout = parsed.value();
    checkStructure(layout);
    // The properties must hold for every length of the files. This loop tests an empty file, an
    // incomplete sector, 33 minutes of sound, and a file longer than any disc.
    for (const std::int64_t each :
         {std::int64_t{0}, std::int64_t{2351}, std::int64_t{350'000'001}, INT64_MAX}) {
        const FileLengths bytes(layout.files.size(), each);
        const auto line = disc::layOnLine("fuzz", layout, bytes);
        if (line.ok()) {
            checkTimeline(line.value(), layout, bytes);
        }
    }
    // There is no remark about missing data if the files are complete or slightly longer.
    for (const std::int64_t more : {0, 1, 2351}) {
        FileLengths bytes = requiredLengths(layout);
        for (std::int64_t& length : bytes) {
            length += more;
        }
        const auto line = disc::layOnLine("fuzz", layout, bytes);
        if (line.ok()) {
            checkTimeline(line.value(), layout, bytes);
            require(line.value().remark.empty());
        }
    }
}

} // namespace sonarith::fuzz
