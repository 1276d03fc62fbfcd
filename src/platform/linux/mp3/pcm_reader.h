// SPDX-License-Identifier: GPL-3.0-or-later
// The interface of the decoders that decode an MP3 stream in one pass to PCM samples, and the
// function that chooses the decoder for a stream.
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

/// Counts the decoded and the lost frames.
struct DecodeCount {
    std::int64_t framesDecoded = 0;
    /// How many of framesDecoded are silent because they need missing data of earlier frames;
    /// 0 in free format, where silent frames are not counted.
    std::int64_t framesSilenced = 0;
    ScanLoss loss;
    friend bool operator==(const DecodeCount&, const DecodeCount&) = default;
};

class PcmReader {
  public:
    virtual ~PcmReader() = default;
    [[nodiscard]] virtual PcmFormat format() const = 0;
    /// Returns the next samples, interleaved; none at the end and after a failure. The result is
    /// valid until the next call.
    [[nodiscard]] virtual std::span<const std::int16_t> next() = 0;
    /// After `next` has returned no samples: the error that ended the reading before the end of the
    /// source; empty if there was none.
    [[nodiscard]] virtual std::optional<Error> failure() const = 0;
    [[nodiscard]] virtual DecodeCount count() const = 0;
    /// Everything before this byte offset in the source has been examined.
    [[nodiscard]] virtual std::int64_t sourcePosition() const = 0;
};

/// Creates a reader of `source`, which must outlive the reader; `survey` must be the survey of
/// `source` or of its beginning. Null if the source has no frame.
[[nodiscard]] Result<std::unique_ptr<PcmReader>> openPcmReader(const ByteSource& source,
                                                               const StreamSurvey& survey);

} // namespace sonarith::mp3
