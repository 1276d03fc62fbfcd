// SPDX-License-Identifier: GPL-3.0-or-later
// The information frame that encoders put before the sound ("Xing", "Info"), and what it says about
// the samples that the encoder added at both ends. The stream's length is not taken from it.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/mp3/mp3_header.h"

namespace sonarith::mp3 {

/// Which samples of a stream are sound. Samples are counted per channel, from the first frame that
/// is no information frame. By default all are.
class GaplessTrim {
  public:
    GaplessTrim() = default;
    /// Samples before `begin` are cut, and those from `end` up to `codedEnd`, where the encoder's
    /// last frame ends. What comes after that was appended later, and stays.
    /// Precondition: 0 <= begin <= end <= codedEnd.
    GaplessTrim(std::int64_t begin, std::int64_t end, std::int64_t codedEnd)
        : begin_(begin), end_(end), codedEnd_(codedEnd) {}

    /// How many of the first `sample` samples are kept: the place that sample `sample` takes in
    /// the result, or would take.
    [[nodiscard]] std::int64_t keptBefore(std::int64_t sample) const;
    [[nodiscard]] std::int64_t begin() const { return begin_; }
    friend bool operator==(const GaplessTrim&, const GaplessTrim&) = default;

  private:
    std::int64_t begin_ = 0;
    std::int64_t end_ = 0;
    std::int64_t codedEnd_ = 0;
};

/// What `frame` (all of its bytes) says if it is an information frame; empty if it is none.
[[nodiscard]] std::optional<GaplessTrim> parseInfoTag(const FrameHeader& header, Bytes frame);

} // namespace sonarith::mp3
