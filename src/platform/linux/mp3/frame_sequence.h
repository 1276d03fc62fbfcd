// SPDX-License-Identifier: GPL-3.0-or-later
// Assigns numbers, from 0, to the frames that are to be decoded: all frames of one format in a
// stream. An information frame at the beginning gets no number. Stores the gapless trim that the
// information frame states (info_tag.h). This class decodes nothing.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/mp3/frame_scanner.h"
#include "platform/linux/mp3/info_tag.h"

namespace sonarith::mp3 {

struct NumberedFrame : Frame {
    std::int64_t number = 0;
};

class FrameSequence {
  public:
    /// Delivers the frames of `format` from the beginning; searches for the first frame at once.
    /// `source` must outlive the sequence.
    FrameSequence(const ByteSource& source, const StreamFormat& format);
    /// Continues at frame `number`, which another sequence found at `offset`.
    FrameSequence(const ByteSource& source, const StreamFormat& format, std::int64_t number,
                  std::int64_t offset)
        : scanner_(source, format, offset), format_(format), number_(number) {}

    [[nodiscard]] const StreamFormat& format() const { return format_; }
    [[nodiscard]] const GaplessTrim& trim() const { return trim_; }
    [[nodiscard]] std::optional<NumberedFrame> next();
    [[nodiscard]] Bytes bytesOf(const Frame& frame) { return scanner_.bytesOf(frame); }
    /// The number of the frame that `next` would return.
    [[nodiscard]] std::int64_t number() const { return number_; }
    [[nodiscard]] const FrameScanner& scanner() const { return scanner_; }

  private:
    FrameScanner scanner_;
    StreamFormat format_;
    GaplessTrim trim_;
    std::optional<Frame> first_; ///< found by the constructor, not returned yet
    std::int64_t number_ = 0;
};

} // namespace sonarith::mp3
