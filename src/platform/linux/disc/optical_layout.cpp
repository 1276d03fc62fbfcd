// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/optical_layout.h"

namespace sonarith::disc {

namespace {

// 100 minutes: the lead-out of a disc is stored in minutes of two decimal digits.
constexpr std::int64_t maxLeadOut = std::int64_t{100} * 60 * sectorsPerSecond;

bool isSound(const RawToc& toc) {
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

/// Whether a new session begins with track `index`, as far as the drive's data show: they contain
/// only the last session, so a sound session between two others is not detected.
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
    // A disc of one session that mixes kinds has its data first, so data after audio counts as a
    // separate session, unless the drive reports that the last session began after the first track
    // and before the data. A start at the first track is not such a report, because a drive without
    // information also returns it. If in doubt, a session is assumed: a track that is two minutes
    // too short is better than a read into the gap, where drives hang.
    const std::int64_t lastSession = toc.lastSessionStart.value_or(0);
    const bool beganBefore = lastSession > toc.tracks.front().start && lastSession < track.start;
    return dataAfterAudio && !beganBefore;
}

} // namespace

std::optional<OpticalLayout> OpticalLayout::of(const RawToc& toc) {
    if (!isSound(toc)) {
        return std::nullopt;
    }
    OpticalLayout layout;
    // The first detected gap is assumed to be the first one of the disc, which is longer than later
    // ones, although an earlier session may not be detected: a track that is a minute too short is
    // better than a read into the gap.
    std::int64_t gap = firstSessionGapSectors;
    for (std::size_t i = 0; i < toc.tracks.size(); ++i) {
        const bool last = i + 1 == toc.tracks.size();
        std::int64_t sectors = (last ? toc.leadOut : toc.tracks[i + 1].start) - toc.tracks[i].start;
        if (!last && beginsSession(toc, i + 1)) {
            // A track no longer than the gap cannot contain it.
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
