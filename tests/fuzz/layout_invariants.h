// SPDX-License-Identifier: GPL-3.0-or-later
// What every layout of a disc image holds, however hostile its sheet was. Shared by the fuzz
// targets of both kinds of sheet; it ends the process where something is broken.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "platform/linux/disc/image_layout.h"
#include "platform/linux/disc/image_timeline.h"
#include "platform/linux/disc/sheet_text.h"
#include "platform/result.h"

namespace sonarith::fuzz {

inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

inline void checkLine(const disc::ImageTimeline& line, const disc::ImageLayout& layout) {
    require(line.table.tracks.size() == layout.tracks.size());
    require(line.table.sectors() <= disc::maxDiscSectors);
    for (const disc::Track& track : line.table.tracks) {
        require(track.sectors > 0);
    }
    std::int64_t end = 0;
    for (const disc::SoundStretch& stretch : line.sound) {
        require(stretch.start >= end && stretch.frames > 0);
        end = stretch.start + stretch.frames;
    }
    require(end <= line.table.sectors() * disc::framesPerSector);
}

inline void checkLayout(const Result<disc::ImageLayout>& parsed) {
    if (!parsed.ok()) {
        require(!parsed.error().text.empty());
        return;
    }
    const disc::ImageLayout& layout = parsed.value();
    require(!layout.tracks.empty() && layout.tracks.size() <= disc::maxTracks);
    require(layout.files.size() <= disc::maxImageFiles);
    for (const disc::LayoutTrack& track : layout.tracks) {
        require(!track.segments.empty());
        for (const disc::Segment& segment : track.segments) {
            require(segment.offset >= 0 && segment.sectorBytes > 0);
            require(segment.frames > 0 || segment.frames == disc::toFileEnd);
            require(segment.kind == disc::SegmentKind::silence ||
                    segment.file < layout.files.size());
        }
    }
    // Files of every size must do: none, a torn sector, half a disc, more than any disc.
    for (const std::int64_t bytes :
         {std::int64_t{0}, std::int64_t{2351}, std::int64_t{350'000'001}, INT64_MAX}) {
        const auto line =
            disc::layOnLine("fuzz", layout, std::vector<std::int64_t>(layout.files.size(), bytes));
        if (line.ok()) {
            checkLine(line.value(), layout);
        }
    }
}

} // namespace sonarith::fuzz
