// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/free_format_decoder.h"

#include <algorithm>
#include <cstdio>
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
    return self.window.failure() ? -1 : static_cast<mpg123_ssize_t>(done);
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

Result<std::unique_ptr<PcmReader>> FreeFormatDecoder::create(const ByteSource& source,
                                                             std::int64_t offset) {
    Result<DecoderHandle> made = makeDecoderHandle(SampleType::sixteenBit, MPG123_GAPLESS, 0);
    if (!made.ok()) {
        return made.error();
    }
    auto input =
        std::make_unique<Input>(Input{SourceWindow(source), source.size(), offset, offset});
    mpg123_handle* handle = made.value().get();
    if (mpg123_replace_reader_handle(handle, &read, &seek, nullptr) != MPG123_OK ||
        mpg123_open_handle(handle, input.get()) != MPG123_OK) {
        return {ErrorNumber::deviceUnavailable,
                std::string("the MP3 decoder takes no data: ") + mpg123_strerror(handle)};
    }
    auto decoder = std::unique_ptr<FreeFormatDecoder>(
        new FreeFormatDecoder(std::move(input), std::move(made.value())));
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    const bool found =
        mpg123_getformat2(decoder->handle_.get(), &rate, &channels, &encoding, 1) == MPG123_OK;
    if (decoder->failure()) {
        return *decoder->failure();
    }
    if (!found) {
        return std::unique_ptr<PcmReader>();
    }
    decoder->format_ = {static_cast<int>(rate), channels};
    decoder->current_ = decoder->format_;
    return std::unique_ptr<PcmReader>(std::move(decoder));
}

PcmFormat FreeFormatDecoder::currentFormat() const {
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    if (mpg123_getformat2(handle_.get(), &rate, &channels, &encoding, 0) != MPG123_OK) {
        return {};
    }
    return {static_cast<int>(rate), channels};
}

std::span<const std::int16_t> FreeFormatDecoder::next() {
    while (true) {
        unsigned char* sound = nullptr;
        std::size_t bytes = 0;
        const int outcome = mpg123_decode_frame(handle_.get(), nullptr, &sound, &bytes);
        if (outcome == MPG123_NEW_FORMAT) {
            current_ = currentFormat();
            continue;
        }
        if (outcome != MPG123_OK) { // the end, or what it cannot go on from
            return {};
        }
        if (current_ != format_) {
            ++count_.loss.framesDropped;
            continue;
        }
        ++count_.framesDecoded;
        if (bytes > 0) {
            // The library's buffer is aligned for its vectors.
            return {reinterpret_cast<const std::int16_t*>(sound), bytes / sizeof(std::int16_t)};
        }
    }
}

} // namespace sonarith::mp3
