// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes a stream of any length, frame by frame, replacing the library's decoder now and then: for
// each frame that the library gives up it takes a time in proportion to the frames before it, so
// that a long stream of damaged frames would take hours. The samples do not show the replacements.
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

/// A decoder is replaced where the frame's number is a multiple of the period, whatever came
/// before: so all passes over a stream replace it at the same places and give the same samples,
/// also behind frames that the library gave up.
class RenewedDecoder {
  public:
    /// Seven minutes: the frames that are decoded twice are 2 of 100, and a frame that is given up
    /// takes twice the time of a good one (measured: 3 ns for each frame before it).
    static constexpr std::int64_t usualPeriod = 16'384;
    static constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();
    /// A new decoder begins so many frames early: as PrerollHistory says, that is enough for any
    /// stream, and it is a multiple of the library's window turn.
    static constexpr std::int64_t lead = 280;

    /// `period`, in frames: a multiple of 8, and longer than `lead`.
    [[nodiscard]] static Result<RenewedDecoder> create(std::int64_t period);

    /// As FrameDecoder::decode. The numbers go up by one from call to call.
    [[nodiscard]] std::span<const std::int16_t> decode(const NumberedFrame& frame, Bytes bytes);
    /// The last frame was silenced, since what it builds on is missing.
    [[nodiscard]] bool silencedLast() const { return silencedLast_; }
    [[nodiscard]] std::int64_t silencedFrames() const { return silenced_; }
    /// How many frames the present decoder was given.
    [[nodiscard]] std::int64_t framesOfDecoder() const { return framesOfDecoder_; }

  private:
    RenewedDecoder(FrameDecoder<std::int16_t> decoder, std::int64_t period)
        : decoder_(std::move(decoder)), period_(period) {}
    void prepareNext(const NumberedFrame& frame, Bytes bytes);

    FrameDecoder<std::int16_t> decoder_;
    std::optional<FrameDecoder<std::int16_t>> next_; ///< decodes the frames of the lead, too
    std::int64_t period_;
    std::int64_t framesOfDecoder_ = 0;
    bool silencedLast_ = false;
    std::int64_t silenced_ = 0;
};

} // namespace sonarith::mp3
