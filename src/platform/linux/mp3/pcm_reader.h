// SPDX-License-Identifier: GPL-3.0-or-later
// A stream read sequentially as sound: the interface of every decoder that decodes an MP3 in one
// pass, and the choice of the decoder for a stream.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/mp3/frame_scanner.h"
#include "platform/linux/mp3/stream_survey.h"

namespace sonarith::mp3 {

struct PcmFormat {
    int rate = 44100;
    int channels = 2;
    friend bool operator==(const PcmFormat&, const PcmFormat&) = default;
};

/// The decoded and the lost frames.
struct DecodeCount {
    std::int64_t framesDecoded = 0;
    std::int64_t framesSilenced = 0; ///< decoded as silence: data that they refer to are missing
    ScanLoss loss;
    friend bool operator==(const DecodeCount&, const DecodeCount&) = default;
};

class PcmReader {
  public:
    virtual ~PcmReader() = default;
    [[nodiscard]] virtual PcmFormat format() const = 0;
    /// The next samples, interleaved; none at the end and after a failure. Valid until the next
    /// call.
    [[nodiscard]] virtual std::span<const std::int16_t> next() = 0;
    /// After `next` has returned none: why the reading ended before the end of the source, if it
    /// did.
    [[nodiscard]] virtual std::optional<Error> failure() const = 0;
    [[nodiscard]] virtual DecodeCount count() const = 0;
    /// Everything before this offset in the source has been examined.
    [[nodiscard]] virtual std::int64_t sourcePosition() const = 0;
};

/// Creates a reader of `source`, which must outlive it; `survey` must be the survey of `source`.
/// Null if the source has no frame.
[[nodiscard]] Result<std::unique_ptr<PcmReader>> openPcmReader(const ByteSource& source,
                                                               const StreamSurvey& survey);

} // namespace sonarith::mp3
