// SPDX-License-Identifier: GPL-3.0-or-later
// Reads how many samples an encoder added before and after the sound. Encoders state this in an
// information frame ("Xing", "Info") at the beginning of the stream. The information frame also
// states a number of frames. This number serves only to locate the added samples: the stream's
// length is not derived from it.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/mp3/mp3_header.h"

namespace sonarith::mp3 {

/// Which samples of a stream are sound. Samples are counted per channel, from the first frame that
/// is not an information frame. By default all samples are sound.
class GaplessTrim {
  public:
    GaplessTrim() = default;
    /// Samples before `begin` and in [`end`, `codedEnd`) are removed. `codedEnd` is the end of the
    /// encoder's last frame: later samples were appended by another program and are kept.
    /// Precondition: 0 <= begin <= end <= codedEnd.
    GaplessTrim(std::int64_t begin, std::int64_t end, std::int64_t codedEnd)
        : begin_(begin), end_(end), codedEnd_(codedEnd) {}

    /// The number of kept samples before the sample with the index `sample`. This is that sample's
    /// position in the result or, if it is removed, the position of the next kept sample.
    [[nodiscard]] std::int64_t keptBefore(std::int64_t sample) const;
    [[nodiscard]] std::int64_t begin() const { return begin_; }
    friend bool operator==(const GaplessTrim&, const GaplessTrim&) = default;

  private:
    std::int64_t begin_ = 0;
    std::int64_t end_ = 0;
    std::int64_t codedEnd_ = 0;
};

/// The trimming that `frame` (all of its bytes) states if it is an information frame; otherwise
/// empty.
[[nodiscard]] std::optional<GaplessTrim> parseInfoTag(const FrameHeader& header, Bytes frame);

} // namespace sonarith::mp3
