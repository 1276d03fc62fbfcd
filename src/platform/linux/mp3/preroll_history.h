// SPDX-License-Identifier: GPL-3.0-or-later
// Remembers the last frames of a stream. Computes at which of them a new decoder must start, so
// that from a given frame on it delivers the same samples as a decoder of the whole stream.
#pragma once

#include <cstdint>
#include <deque>

#include "platform/linux/mp3/frame_sequence.h"

namespace sonarith::mp3 {

/// The number of the frame at which decoding begins, and that frame's offset in the source, in
/// bytes.
struct Preroll {
    std::int64_t frame = 0;
    std::int64_t offset = 0;
};

class PrerollHistory {
  public:
    /// Must be called for every frame, in order.
    void add(const NumberedFrame& frame);
    /// Returns where a new decoder must start so that its samples are correct from `frame` on.
    /// Precondition: `frame` is the last added frame, the frame after it, or one shortly before it.
    /// The history keeps only the last frames.
    [[nodiscard]] Preroll before(std::int64_t frame) const;

  private:
    struct Entry {
        std::int64_t number;
        std::int64_t offset;
        int mainDataBytes;
        int maxReservoirBytes;
    };
    std::deque<Entry> entries_;
};

} // namespace sonarith::mp3
