// SPDX-License-Identifier: GPL-3.0-or-later
// Remembers the last frames of a stream, and tells from which of them a fresh decoder must begin to
// give the same samples as one that began at the stream's first frame.
#pragma once

#include <cstdint>
#include <deque>

#include "platform/linux/mp3/frame_sequence.h"

namespace sonarith::mp3 {

/// A frame to begin decoding at, and where it is.
struct Preroll {
    std::int64_t frame = 0;
    std::int64_t offset = 0;
};

class PrerollHistory {
  public:
    /// To be told of every frame, in order.
    void add(const NumberedFrame& frame);
    /// Where to begin for `frame`, which is among the frames told of, or the next one.
    /// Precondition: a frame was told of.
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
