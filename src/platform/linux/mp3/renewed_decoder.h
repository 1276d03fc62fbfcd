// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes a stream of any length, frame by frame, and replaces its decoder (a handle of libmpg123,
// "the library") periodically. The reason: the library gives up some damaged frames (stops decoding
// them half-way). For each of these frames, it needs time in proportion to the number of frames
// that the same handle has decoded before. So without replacements a long stream of damaged frames
// would take hours. The replacements do not affect the samples of undamaged streams.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <utility>

#include "platform/linux/mp3/frame_decoder.h"
#include "platform/linux/mp3/frame_sequence.h"
#include "platform/result.h"

namespace sonarith::mp3 {

/// The decoder is replaced at each frame whose number is a multiple of the period. There is no
/// replacement if the pass over the stream began less than `lead` frames earlier, or if there is no
/// memory for a second decoder. Two passes with the same period may begin at different frames. From
/// the first frame at which both replace the decoder, they deliver the same samples, even after
/// frames that the library gave up.
class RenewedDecoder {
  public:
    /// Seven minutes of sound. With this period, 2 of 100 frames are decoded twice, and a frame
    /// that is given up takes at most twice the time of a good frame (measured: 3 ns for each
    /// preceding frame).
    static constexpr std::int64_t usualPeriod = 16'384;
    /// A period for create(): the decoder is never replaced.
    static constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();
    /// A new decoder begins this many frames before it replaces the old one. By PrerollHistory's
    /// rules this lead is enough for any stream, and it is a multiple of the library's window
    /// period (8 frames).
    static constexpr std::int64_t lead = 280;

    /// `period`, in frames: a multiple of 8 that is longer than `lead`, or `never`.
    [[nodiscard]] static Result<RenewedDecoder> create(std::int64_t period);

    /// As FrameDecoder::decode. The frame numbers must be consecutive from call to call.
    [[nodiscard]] std::span<const std::int16_t> decode(const NumberedFrame& frame, Bytes bytes);
    /// Whether the last frame was silenced because data that it refers to are missing.
    [[nodiscard]] bool silencedLast() const { return silencedLast_; }
    [[nodiscard]] std::int64_t silencedFrames() const { return silenced_; }
    /// The number of frames that the current decoder has decoded, including its lead.
    [[nodiscard]] std::int64_t framesOfDecoder() const { return framesOfDecoder_; }

  private:
    RenewedDecoder(FrameDecoder<std::int16_t> decoder, std::int64_t period)
        : decoder_(std::move(decoder)), period_(period) {}
    void prepareNext(const NumberedFrame& frame, Bytes bytes);

    FrameDecoder<std::int16_t> decoder_;
    std::optional<FrameDecoder<std::int16_t>> next_; ///< decodes only the lead
    std::int64_t period_;
    std::int64_t framesOfDecoder_ = 0;
    bool silencedLast_ = false;
    std::int64_t silenced_ = 0;
};

} // namespace sonarith::mp3
