// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/renewed_decoder.h"

#include <utility>

namespace sonarith::mp3 {

Result<RenewedDecoder> RenewedDecoder::create(std::int64_t period) {
    Result<FrameDecoder<std::int16_t>> decoder = FrameDecoder<std::int16_t>::create();
    if (!decoder.ok()) {
        return decoder.error();
    }
    return RenewedDecoder(std::move(decoder.value()), period);
}

std::span<const std::int16_t> RenewedDecoder::decode(const NumberedFrame& frame, Bytes bytes) {
    const std::int64_t place = frame.number % period_;
    if (place == 0 && next_) {
        decoder_ = std::move(*std::exchange(next_, std::nullopt));
        framesOfDecoder_ = lead;
    }
    if (place >= period_ - lead) {
        prepareNext(frame, bytes);
    }
    ++framesOfDecoder_;
    const std::span<const std::int16_t> samples = decoder_.decode(frame, bytes);
    silencedLast_ = decoder_.silencedLast();
    silenced_ += silencedLast_ ? 1 : 0;
    return samples;
}

void RenewedDecoder::prepareNext(const NumberedFrame& frame, Bytes bytes) {
    if (frame.number % period_ == period_ - lead) {
        // If there is no memory for another decoder, the current decoder continues. It may become
        // slow: the more frames it has decoded, the more time it needs for each frame that the
        // library gives up (stops decoding half-way).
        if (Result<FrameDecoder<std::int16_t>> made = FrameDecoder<std::int16_t>::create();
            made.ok()) {
            next_.emplace(std::move(made.value()));
        }
    }
    if (next_) {
        static_cast<void>(next_->decode(frame, bytes));
    }
}

} // namespace sonarith::mp3
