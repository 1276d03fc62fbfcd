// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/image_layout.h"

#include <utility>

namespace sonarith::disc {

std::vector<LayoutTrack> joinPauses(std::vector<SheetTrack> tracks) {
    std::vector<LayoutTrack> joined;
    for (SheetTrack& track : tracks) {
        if (!joined.empty()) {
            LayoutTrack& before = joined.back();
            const bool soundEnds = track.opensSession || (before.kind == TrackKind::audio &&
                                                          track.kind == TrackKind::data);
            if (!soundEnds) {
                before.segments.insert(before.segments.end(), track.pause.begin(),
                                       track.pause.end());
            }
        }
        joined.push_back({track.kind, track.line, std::move(track.body)});
    }
    return joined;
}

std::int64_t statedBytes(const Segment& segment) {
    return segment.frames * segment.sectorBytes / framesPerSector - segment.lastSectorLacks;
}

std::int64_t statedFrames(const std::vector<Segment>& segments) {
    std::int64_t frames = 0;
    for (const Segment& segment : segments) {
        if (segment.frames == toFileEnd) {
            return toFileEnd;
        }
        frames += segment.frames;
    }
    return frames;
}

} // namespace sonarith::disc
