// SPDX-License-Identifier: GPL-3.0-or-later
// Converts a drive's table of contents to the time line of disc.h, and a position on that line to
// the drive's sector number. Pure arithmetic: it accesses no drive.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {

/// The gap between the last track of a session and the first one of the next, in sectors. The
/// drive's table counts the gap as a part of the preceding track. After the first session: 6750 of
/// lead-out, 4500 of lead-in and 150 of pause; later lead-outs have 2250 (Orange Book part II; Blue
/// Book for the enhanced disc).
inline constexpr std::int64_t firstSessionGapSectors = 6750 + 4500 + 150;
inline constexpr std::int64_t laterSessionGapSectors = 2250 + 4500 + 150;

/// One line of the drive's table.
struct RawTrack {
    TrackKind kind = TrackKind::audio;
    std::int64_t start = 0; ///< the drive's number of the sector at INDEX 01
    friend bool operator==(const RawTrack&, const RawTrack&) = default;
};

/// The drive's table, in track order.
struct RawToc {
    std::vector<RawTrack> tracks;
    std::int64_t leadOut = 0; ///< first sector after the last track
    /// First sector of the last session: that of the first track if there is only one session;
    /// empty if the drive cannot report it.
    std::optional<std::int64_t> lastSessionStart;
    friend bool operator==(const RawToc&, const RawToc&) = default;
};

/// Where a stretch of the time line is on the disc.
struct Stretch {
    TrackKind kind = TrackKind::audio;
    std::int64_t first = 0;   ///< the drive's number of the first sector
    std::int64_t sectors = 0; ///< number of consecutive sectors from there
};

/// The table, with the mapping from the time line to the drive's sectors.
class OpticalLayout {
  public:
    /// Empty for a table that no disc can have. A file that is not a drive and a drive without
    /// information return such tables.
    [[nodiscard]] static std::optional<OpticalLayout> of(const RawToc& toc);

    [[nodiscard]] const Table& table() const { return table_; }
    /// The longest stretch of sectors of one kind that is contiguous on the disc, starting at
    /// `sector` of the time line. Has no sectors if `sector` is at or after the line's end.
    [[nodiscard]] Stretch stretchAt(std::int64_t sector) const;

  private:
    Table table_;
    std::vector<std::int64_t> starts_; ///< of each track, in the drive's numbering
};

} // namespace sonarith::disc
