// SPDX-License-Identifier: GPL-3.0-or-later
// The sequential road: one decoder goes over all frames from front to back. Its samples are the
// truth that the segments are held against. Not for streams in free format.
#pragma once

#include <memory>

#include "platform/linux/mp3/frame_decoder.h"
#include "platform/linux/mp3/frame_sequence.h"
#include "platform/linux/mp3/pcm_reader.h"

namespace sonarith::mp3 {

class SequentialDecoder : public PcmReader {
  public:
    /// Reads on from the beginning of `frames`. Precondition: it has a format.
    [[nodiscard]] static Result<std::unique_ptr<PcmReader>> create(FrameSequence frames);

    [[nodiscard]] PcmFormat format() const override;
    [[nodiscard]] std::span<const std::int16_t> next() override;
    [[nodiscard]] std::optional<Error> failure() const override;
    [[nodiscard]] DecodeCount count() const override;
    [[nodiscard]] std::int64_t sourcePosition() const override;

  private:
    SequentialDecoder(FrameSequence frames, FrameDecoder<std::int16_t> decoder)
        : frames_(std::move(frames)), decoder_(std::move(decoder)) {}

    FrameSequence frames_;
    FrameDecoder<std::int16_t> decoder_;
};

/// The part of frame `number`'s samples that is kept.
[[nodiscard]] std::span<const std::int16_t> keptPart(const GaplessTrim& trim,
                                                     const StreamFormat& format,
                                                     std::int64_t number,
                                                     std::span<const std::int16_t> samples);

} // namespace sonarith::mp3
