// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/toc_track.h"

#include <algorithm>
#include <utility>

#include "platform/linux/disc/sheet_text.h"

namespace sonarith::disc {

TocTrack::TocTrack(TrackKind kind, int sectorBytes, int line) : sectorBytes_(sectorBytes) {
    content_.kind = kind;
    content_.line = line;
}

void TocTrack::add(Segment segment) {
    segment.sectorBytes = sectorBytes_;
    if (segment.frames != 0) {
        content_.body.push_back(segment);
    }
}

TocTrackCheck TocTrack::beginStart(int line) {
    startLine_ = line;
    if (std::exchange(started_, true)) {
        return TocTrackProblem{line, "the track already has a START or PREGAP"};
    }
    return {};
}

TocTrackCheck TocTrack::startHere(int line) {
    auto problem = beginStart(line);
    if (!problem) {
        content_.pause = std::exchange(content_.body, {});
    }
    return problem;
}

TocTrackCheck TocTrack::startAt(std::int64_t sectors, int line) {
    startSectors_ = sectors;
    return beginStart(line);
}

TocTrackCheck TocTrack::pregap(std::int64_t sectors, int line) {
    if (!content_.body.empty()) {
        return TocTrackProblem{line, "PREGAP follows content of its track"};
    }
    auto problem = beginStart(line);
    if (!problem && sectors > 0) {
        content_.pause.push_back({.frames = sectors * framesPerSector});
    }
    return problem;
}

TocTrackCheck TocTrack::index(std::int64_t sectors, int line) {
    if (sectors <= lastIndexSectors_) {
        return TocTrackProblem{line, "the times are out of order: INDEX " + msfText(sectors) +
                                         " follows " + msfText(lastIndexSectors_)};
    }
    lastIndexSectors_ = sectors;
    lastIndexLine_ = line;
    return {};
}

TocTrackCheck TocTrack::close() {
    if (startSectors_ && !splitBody(*startSectors_ * framesPerSector)) {
        return TocTrackProblem{startLine_, "START " + msfText(*startSectors_) +
                                               " is beyond the end of the track"};
    }
    if (content_.body.empty()) {
        return TocTrackProblem{content_.line, "the track has no content"};
    }
    const std::int64_t frames = statedFrames(content_.body);
    if (frames != toFileEnd && lastIndexSectors_ > 0 &&
        lastIndexSectors_ * framesPerSector >= frames) {
        return TocTrackProblem{lastIndexLine_, "INDEX " + msfText(lastIndexSectors_) +
                                                   " is beyond the end of the track"};
    }
    return {};
}

/// Moves the first `frames` frames of the body to the pause. If a segment that extends to its
/// file's end is split, its rest still extends to that end. Returns false if the body has fewer
/// than `frames` frames.
bool TocTrack::splitBody(std::int64_t frames) {
    auto& body = content_.body;
    auto segment = body.begin();
    for (; frames > 0 && segment != body.end(); ++segment) {
        Segment part = *segment;
        part.frames = part.frames == toFileEnd ? frames : std::min(part.frames, frames);
        frames -= part.frames;
        const bool split = part.frames != segment->frames;
        if (split) {
            part.lastSectorLacks = 0; // the incomplete last sector stays in the body
        }
        content_.pause.push_back(part);
        if (split) {
            segment->frames -= segment->frames == toFileEnd ? 0 : part.frames;
            segment->offset += part.frames * segment->sectorBytes / framesPerSector;
            break;
        }
    }
    body.erase(body.begin(), segment);
    return frames == 0;
}

} // namespace sonarith::disc
