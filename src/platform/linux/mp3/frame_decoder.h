// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes consecutive whole frames through libmpg123. The callers find the frames and trim the
// decoded samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/linux/late/mpg123.h"
#include "platform/linux/mp3/bit_reservoir.h"
#include "platform/linux/mp3/frame_scanner.h"
#include "platform/result.h"

namespace sonarith::mp3 {

struct CloseDecoder {
    void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
};
using DecoderHandle = std::unique_ptr<mpg123_handle, CloseDecoder>;

enum class SampleType { sixteenBit, floatingPoint };

/// Creates a handle that delivers samples of `type` at the stream's own rate and number of
/// channels. The library contains several decoders, whose samples differ in the last bit; all
/// handles of the program use the same decoder.
[[nodiscard]] Result<DecoderHandle> makeDecoderHandle(SampleType type, long addedFlags,
                                                      long removedFlags);

template <typename Sample>
class FrameDecoder {
  public:
    [[nodiscard]] static Result<FrameDecoder> create();

    /// Decodes the next frame of the stream. Returns interleaved samples, always samplesPerFrame()
    /// for each channel, with zeros where decoding is impossible. The result is valid until the
    /// next call.
    [[nodiscard]] std::span<const Sample> decode(const Frame& frame, Bytes bytes);
    /// Whether the last frame was silenced because data that it refers to are missing.
    [[nodiscard]] bool silencedLast() const { return silencedLast_; }
    /// The number of frames that were silenced because data that they refer to are missing.
    [[nodiscard]] std::int64_t silencedFrames() const { return silenced_; }

  private:
    explicit FrameDecoder(DecoderHandle handle) : handle_(std::move(handle)) {}

    DecoderHandle handle_;
    BitReservoir reservoir_;
    std::vector<std::uint8_t> frame_;
    std::vector<Sample> samples_;
    bool silencedLast_ = false;
    std::int64_t silenced_ = 0;
};

extern template class FrameDecoder<std::int16_t>;
extern template class FrameDecoder<float>;

} // namespace sonarith::mp3
