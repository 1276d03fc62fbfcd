// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/frame_decoder.h"

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <utility>

namespace sonarith::mp3 {

namespace {

/// The decoder that is the fastest on this processor: the library lists it first.
const char* decoderName() {
    static const char* const name = [] {
        mpg123_init();
        const char** list = mpg123_supported_decoders();
        return list != nullptr ? *list : nullptr;
    }();
    return name;
}

} // namespace

Result<DecoderHandle> makeDecoderHandle(SampleType type, long addedFlags, long removedFlags) {
    int error = MPG123_OK;
    DecoderHandle handle(mpg123_new(decoderName(), &error));
    if (!handle) {
        return {ErrorNumber::deviceUnavailable,
                std::string("no MP3 decoder: ") + mpg123_plain_strerror(error)};
    }
    const int encoding =
        type == SampleType::sixteenBit ? MPG123_ENC_SIGNED_16 : MPG123_ENC_FLOAT_32;
    constexpr long everyRate = 0;
    constexpr long resampling = MPG123_AUTO_RESAMPLE | MPG123_FLOAT_FALLBACK;
    mpg123_handle* raw = handle.get();
    if (mpg123_param2(raw, MPG123_ADD_FLAGS, MPG123_QUIET | MPG123_SKIP_ID3V2 | addedFlags, 0) !=
            MPG123_OK ||
        mpg123_param2(raw, MPG123_REMOVE_FLAGS, resampling | removedFlags, 0) != MPG123_OK ||
        mpg123_param2(raw, MPG123_RESYNC_LIMIT, -1, 0) != MPG123_OK ||
        mpg123_format_none(raw) != MPG123_OK ||
        mpg123_format2(raw, everyRate, MPG123_MONO | MPG123_STEREO, encoding) != MPG123_OK) {
        return {ErrorNumber::deviceUnavailable,
                std::string("the MP3 decoder reports an error: ") + mpg123_strerror(raw)};
    }
    return handle;
}

template <typename Sample>
Result<FrameDecoder<Sample>> FrameDecoder<Sample>::create() {
    constexpr SampleType type =
        std::is_same_v<Sample, float> ? SampleType::floatingPoint : SampleType::sixteenBit;
    Result<DecoderHandle> handle =
        makeDecoderHandle(type, MPG123_NO_READAHEAD | MPG123_IGNORE_INFOFRAME, MPG123_GAPLESS);
    if (!handle.ok()) {
        return handle.error();
    }
    if (mpg123_open_feed(handle.value().get()) != MPG123_OK) {
        return {ErrorNumber::deviceUnavailable, "the MP3 decoder accepts no data"};
    }
    return FrameDecoder(std::move(handle.value()));
}

template <typename Sample>
std::span<const Sample> FrameDecoder<Sample>::decode(const Frame& frame, Bytes bytes) {
    frame_.assign(bytes.begin(), bytes.end());
    if (frame.afterGap) {
        reservoir_.clear();
    }
    const std::optional<int> begin = reservoir_.admit(frame.header, frame_);
    silencedLast_ = begin.has_value();
    if (begin) {
        silence(frame.header, frame_, *begin);
        ++silenced_;
    }
    const StreamFormat& format = frame.header.format;
    samples_.assign(static_cast<std::size_t>(format.samplesPerFrame()) *
                        static_cast<std::size_t>(format.channels),
                    Sample{});
    int outcome = mpg123_feed(handle_.get(), frame_.data(), frame_.size());
    while (outcome == MPG123_OK || outcome == MPG123_NEW_FORMAT) {
        unsigned char* sound = nullptr;
        std::size_t count = 0;
        outcome = mpg123_decode_frame(handle_.get(), nullptr, &sound, &count);
        if (outcome == MPG123_OK && sound != nullptr) {
            std::memcpy(samples_.data(), sound, std::min(count, samples_.size() * sizeof(Sample)));
        }
    }
    return samples_;
}

template class FrameDecoder<std::int16_t>;
template class FrameDecoder<float>;

} // namespace sonarith::mp3
