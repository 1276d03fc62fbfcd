// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes all frames of a FrameSequence in order, in one pass. A decoding in parallel segments must
// yield the same samples as this decoder. Not for streams in free format.
#pragma once

#include <memory>
#include <utility>

#include "platform/linux/mp3/frame_sequence.h"
#include "platform/linux/mp3/pcm_reader.h"
#include "platform/linux/mp3/renewed_decoder.h"

namespace sonarith::mp3 {

class SequentialDecoder : public PcmReader {
  public:
    /// Creates a decoder of `frames`, which must not have returned a frame yet.
    [[nodiscard]] static Result<std::unique_ptr<PcmReader>> create(FrameSequence frames);

    [[nodiscard]] PcmFormat format() const override;
    [[nodiscard]] std::span<const std::int16_t> next() override;
    [[nodiscard]] std::optional<Error> failure() const override;
    [[nodiscard]] DecodeCount count() const override;
    [[nodiscard]] std::int64_t sourcePosition() const override;

  private:
    SequentialDecoder(FrameSequence frames, RenewedDecoder decoder)
        : frames_(std::move(frames)), decoder_(std::move(decoder)) {}

    FrameSequence frames_;
    RenewedDecoder decoder_;
};

/// `samples` are the samples of frame `number`. Returns the part of them that `trim` keeps.
[[nodiscard]] std::span<const std::int16_t> keptPart(const GaplessTrim& trim,
                                                     const StreamFormat& format,
                                                     std::int64_t number,
                                                     std::span<const std::int16_t> samples);

} // namespace sonarith::mp3
