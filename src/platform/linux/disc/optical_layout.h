// SPDX-License-Identifier: GPL-3.0-or-later
// Converts a drive's table of contents to the time line of disc.h, and a position on that time line
// to the drive's sector number. Pure arithmetic: it accesses no drive.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {

/// The gap between the last track of a session and the first track of the next session, in sectors:
/// a lead-out, a lead-in and a pause. The first session's lead-out has 6750 sectors, later ones
/// have 2250 (Orange Book part II; Blue Book for the enhanced disc). The drive's table counts the
/// gap as a part of the preceding track.
inline constexpr std::int64_t firstSessionGapSectors = 6750 + 4500 + 150;
inline constexpr std::int64_t laterSessionGapSectors = 2250 + 4500 + 150;

/// One entry of the drive's table.
struct RawTrack {
    TrackKind kind = TrackKind::audio;
    std::int64_t start = 0; ///< the drive's number of the sector at INDEX 01
    friend bool operator==(const RawTrack&, const RawTrack&) = default;
};

/// The drive's table, in track order.
struct RawToc {
    std::vector<RawTrack> tracks;
    std::int64_t leadOut = 0; ///< first sector after the last track
    /// First sector of the last session; the first track's start if there is only one session.
    /// Empty if the drive cannot report it.
    std::optional<std::int64_t> lastSessionStart;
    friend bool operator==(const RawToc&, const RawToc&) = default;
};

/// Consecutive sectors of one kind. A part of the time line is mapped to them.
struct Stretch {
    TrackKind kind = TrackKind::audio;
    std::int64_t first = 0;   ///< the drive's number of the first sector
    std::int64_t sectors = 0; ///< number of consecutive sectors from there
};

/// The table of a disc, and the mapping from its time line to the drive's sectors.
class OpticalLayout {
  public:
    /// Empty for a table that no disc can have. libcdio returns such tables for a file that is not
    /// a drive and for a drive without information about its disc.
    [[nodiscard]] static std::optional<OpticalLayout> of(const RawToc& toc);

    [[nodiscard]] const Table& table() const { return table_; }
    /// The longest stretch of sectors of one kind that is contiguous on the disc, starting at
    /// `sector` of the time line. The stretch has no sectors if `sector` is at or after the end of
    /// the time line.
    [[nodiscard]] Stretch stretchAt(std::int64_t sector) const;

  private:
    Table table_;
    std::vector<std::int64_t> starts_; ///< of each track, in the drive's numbering
};

} // namespace sonarith::disc
