// SPDX-License-Identifier: GPL-3.0-or-later
// Distinguishes a frame from bytes that look like a frame header by chance. The test is whether
// the frame "begins a row": two frames of its format follow it, or fewer if a tag or the end of the
// source comes first. Also detects the tags between frames. It examines bytes in memory; the
// scanner (frame_scanner.h) reads the source.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <utility>
#include <vector>

#include "platform/linux/mp3/mp3_header.h"

namespace sonarith::mp3 {

/// The length that the tag at the beginning of `bytes` states (ID3v1, ID3v2, APE), which may be
/// wrong; 0 if there is no tag.
[[nodiscard]] std::int64_t claimedTagBytes(Bytes bytes);

/// The first offset, not less than `offset`, at which parseHeader() accepts the bytes; the size of
/// `bytes` if there is none.
[[nodiscard]] std::size_t findHeader(Bytes bytes, std::size_t offset);

/// Whether no frame is expected at `offset` of `bytes`: the source ends before a whole header, or a
/// tag begins.
[[nodiscard]] bool rowEndsAt(Bytes bytes, std::size_t offset);

/// Whether the frame at `offset` of `bytes` is followed by two more of its format, or by fewer and
/// then by a tag or the end of the source. `bytes` must contain three whole frames from `offset`
/// on, unless the source ends earlier.
[[nodiscard]] bool beginsRow(const FrameHeader& header, Bytes bytes, std::size_t offset);

/// Remembers where rows of frames begin. So each offset is tried only once, however often it is
/// queried. Trying each offset at each query would take too long with hostile data, which can
/// contain a header at every fourth byte.
class RowsAhead {
  public:
    /// Whether a row of `format` begins in [`begin`, `end`) of the source. `bytes` are the bytes
    /// of the source from `position` on. They must extend three whole frames beyond `end`, unless
    /// the source ends earlier.
    /// Precondition: position <= begin, and begin never decreases between calls.
    [[nodiscard]] bool anyWithin(const StreamFormat& format, std::int64_t begin, std::int64_t end,
                                 Bytes bytes, std::int64_t position);
    /// How many offsets were tried in total as the beginning of a row.
    [[nodiscard]] std::int64_t placesTried() const { return placesTried_; }

  private:
    using Places = std::deque<std::int64_t>;
    void tryPlace(Bytes bytes, std::size_t place, std::int64_t position);
    [[nodiscard]] Places& placesOf(const StreamFormat& format);

    std::vector<std::pair<StreamFormat, Places>> rows_; ///< there are 54 formats at most
    std::int64_t triedTo_ = 0;
    std::int64_t placesTried_ = 0;
};

} // namespace sonarith::mp3
