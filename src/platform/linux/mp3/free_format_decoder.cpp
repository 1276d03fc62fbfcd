// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/free_format_decoder.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

namespace sonarith::mp3 {

mpg123_ssize_t FreeFormatDecoder::read(void* input, void* out, std::size_t bytes) {
    auto& self = *static_cast<Input*>(input);
    auto* to = static_cast<std::uint8_t*>(out);
    std::size_t done = 0;
    while (done < bytes) {
        const Bytes found = self.window.at(self.position);
        const std::size_t count = std::min(found.size(), bytes - done);
        if (count == 0) {
            break;
        }
        std::copy_n(found.begin(), count, to + done);
        done += count;
        self.position += static_cast<std::int64_t>(count);
    }
    const bool failed = done == 0 && bytes > 0 && self.window.failure();
    return failed ? -1 : static_cast<mpg123_ssize_t>(done);
}

off_t FreeFormatDecoder::seek(void* input, off_t offset, int origin) {
    auto& self = *static_cast<Input*>(input);
    const std::int64_t from = origin == SEEK_SET   ? self.begin
                              : origin == SEEK_CUR ? self.position
                                                   : self.size;
    if (from + offset < self.begin) {
        return -1;
    }
    self.position = from + offset;
    return self.position - self.begin;
}

Result<DecoderHandle> FreeFormatDecoder::open(Input& input, std::int64_t offset) {
    input.begin = offset;
    input.position = offset;
    Result<DecoderHandle> made = makeDecoderHandle(SampleType::sixteenBit, MPG123_GAPLESS, 0);
    if (!made.ok()) {
        return made;
    }
    mpg123_handle* handle = made.value().get();
    if (mpg123_replace_reader_handle(handle, &read, &seek, nullptr) != MPG123_OK ||
        mpg123_open_handle(handle, &input) != MPG123_OK) {
        return {ErrorNumber::deviceUnavailable,
                std::string("the MP3 decoder accepts no data: ") + mpg123_strerror(handle)};
    }
    return made;
}

Result<std::unique_ptr<FreeFormatDecoder>>
FreeFormatDecoder::create(const ByteSource& source, std::int64_t offset, std::int64_t patience) {
    auto input =
        std::make_unique<Input>(Input{SourceWindow(source), source.size(), offset, offset});
    Result<DecoderHandle> opened = open(*input, offset);
    if (!opened.ok()) {
        return opened.error();
    }
    auto decoder = std::unique_ptr<FreeFormatDecoder>(
        new FreeFormatDecoder(std::move(input), std::move(opened.value()), patience));
    const std::optional<PcmFormat> format = formatOf(decoder->handle_);
    if (!format) {
        return decoder->failure() ? Result<std::unique_ptr<FreeFormatDecoder>>(*decoder->failure())
                                  : std::unique_ptr<FreeFormatDecoder>();
    }
    decoder->format_ = *format;
    decoder->current_ = *format;
    return decoder;
}

std::optional<PcmFormat> FreeFormatDecoder::formatOf(const DecoderHandle& handle) {
    constexpr int forget = 1; // so that the library does not report the same format again
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    if (mpg123_getformat2(handle.get(), &rate, &channels, &encoding, forget) != MPG123_OK) {
        return std::nullopt;
    }
    return PcmFormat{static_cast<int>(rate), channels};
}

std::span<const std::int16_t> FreeFormatDecoder::next() {
    while (work_ < patience_ || renew()) {
        const std::span<const std::int16_t> samples = decodeFrame();
        if (samples.empty()) {
            break;
        }
        noteWork(samples);
        if (current_ == format_) {
            return samples;
        }
    }
    return {};
}

/// Returns the samples of the next frame that has any, in that frame's format (current_). Returns
/// none at the end, and where the library cannot continue.
std::span<const std::int16_t> FreeFormatDecoder::decodeFrame() {
    while (true) {
        unsigned char* sound = nullptr;
        std::size_t bytes = 0;
        const int outcome = mpg123_decode_frame(handle_.get(), nullptr, &sound, &bytes);
        if (outcome == MPG123_NEW_FORMAT) {
            current_ = formatOf(handle_).value_or(PcmFormat{});
            continue;
        }
        if (outcome != MPG123_OK) {
            return {};
        }
        ++frames_;
        ++(current_ == format_ ? count_.framesDecoded : count_.loss.framesDropped);
        if (bytes > 0) {
            // The cast is safe: the library's buffer is aligned for vector instructions.
            return {reinterpret_cast<const std::int16_t*>(sound), bytes / sizeof(std::int16_t)};
        }
    }
}

/// Adds frames_ to work_ if the library may have given up the frame of `samples` (stopped decoding
/// it half-way). Giving up a frame costs time in proportion to frames_ (see usualPatience). When
/// the library gives up a frame, it fills the rest of the frame's samples with zeros. So every
/// frame that ends in silence counts as given up. The worst result is an unnecessary new decoder,
/// which costs little.
void FreeFormatDecoder::noteWork(std::span<const std::int16_t> samples) {
    constexpr std::size_t end = 2 * 32; // one synthesis step in stereo, two in mono
    const auto last = samples.last(std::min(samples.size(), end));
    const bool silent =
        std::all_of(last.begin(), last.end(), [](std::int16_t sample) { return sample == 0; });
    work_ += silent ? frames_ : 0;
}

/// Replaces the decoder by a new one, which continues after the last decoded frame. Returns false
/// if that is impossible.
bool FreeFormatDecoder::renew() {
    const std::int64_t lastFrame = input_->begin + mpg123_framepos(handle_.get());
    Result<DecoderHandle> opened = open(*input_, lastFrame);
    if (!opened.ok()) {
        return false;
    }
    const std::optional<PcmFormat> format = formatOf(opened.value());
    if (!format) {
        return false;
    }
    handle_ = std::move(opened.value());
    current_ = *format;
    frames_ = 0;
    work_ = 0;
    ++renewals_;
    const DecodeCount count = count_;
    const bool found = !decodeFrame().empty(); // decodes the last decoded frame again
    count_ = count;
    return found;
}

} // namespace sonarith::mp3
