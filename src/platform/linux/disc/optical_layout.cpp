// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/optical_layout.h"

namespace sonarith::disc {

namespace {

// 100 minutes: a disc stores the minutes of its lead-out as two decimal digits.
constexpr std::int64_t maxLeadOut = std::int64_t{100} * 60 * sectorsPerSecond;

bool isPlausible(const RawToc& toc) {
    if (toc.tracks.empty() || toc.tracks.size() > maxTracks) {
        return false;
    }
    std::int64_t before = -1;
    for (const RawTrack& track : toc.tracks) {
        if (track.start <= before) {
            return false;
        }
        before = track.start;
    }
    return toc.leadOut > before && toc.leadOut <= maxLeadOut;
}

/// Whether a new session begins with track `index`. The drive reports only where the last session
/// starts, so an audio session between two other sessions is not detected.
bool beginsSession(const RawToc& toc, std::size_t index) {
    if (index == 0) {
        return false;
    }
    const RawTrack& track = toc.tracks[index];
    if (toc.lastSessionStart == track.start) {
        return true;
    }
    const bool dataAfterAudio =
        track.kind == TrackKind::data && toc.tracks[index - 1].kind == TrackKind::audio;
    // A single session with audio and data tracks has its data track first. So data after audio
    // counts as a new session, unless the drive reports a last session that began after the first
    // track and before this track. A reported start equal to the first track's is ignored, because
    // a drive without session information also returns that value. If in doubt, a session is
    // assumed: a track that is two and a half minutes too short is better than a read into the gap
    // between the sessions, where drives hang.
    const std::int64_t lastSession = toc.lastSessionStart.value_or(0);
    const bool beganBefore = lastSession > toc.tracks.front().start && lastSession < track.start;
    return dataAfterAudio && !beganBefore;
}

} // namespace

std::optional<OpticalLayout> OpticalLayout::of(const RawToc& toc) {
    if (!isPlausible(toc)) {
        return std::nullopt;
    }
    OpticalLayout layout;
    // The first gap found is assumed to follow the disc's first session; that gap is longer than
    // later ones. If an earlier session was not detected, the track before the gap becomes a
    // minute too short, which is better than a read into the gap.
    std::int64_t gap = firstSessionGapSectors;
    for (std::size_t i = 0; i < toc.tracks.size(); ++i) {
        const bool last = i + 1 == toc.tracks.size();
        std::int64_t sectors = (last ? toc.leadOut : toc.tracks[i + 1].start) - toc.tracks[i].start;
        if (!last && beginsSession(toc, i + 1)) {
            // A track that is not longer than the gap cannot contain the gap.
            sectors -= sectors > gap ? gap : 0;
            gap = laterSessionGapSectors;
        }
        layout.table_.tracks.push_back({toc.tracks[i].kind, sectors});
        layout.starts_.push_back(toc.tracks[i].start);
    }
    return layout;
}

Stretch OpticalLayout::stretchAt(std::int64_t sector) const {
    Stretch stretch;
    std::int64_t start = 0; // of the track, on the time line
    for (std::size_t i = 0; i < starts_.size(); ++i) {
        const Track& track = table_.tracks[i];
        const std::int64_t end = start + track.sectors;
        if (stretch.sectors > 0) {
            if (track.kind != stretch.kind || starts_[i] != stretch.first + stretch.sectors) {
                break;
            }
            stretch.sectors += track.sectors;
        } else if (sector >= start && sector < end) {
            stretch = {track.kind, starts_[i] + (sector - start), end - sector};
        }
        start = end;
    }
    return stretch;
}

} // namespace sonarith::disc
