// SPDX-License-Identifier: GPL-3.0-or-later
// The road for streams in free format: the library finds the frames itself, since only it guesses
// their size, and one pass over the whole stream is all there is. Other streams do not come here.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/linux/mp3/frame_decoder.h"
#include "platform/linux/mp3/pcm_reader.h"

namespace sonarith::mp3 {

class FreeFormatDecoder : public PcmReader {
  public:
    /// Reads `source` from `offset` on. Null if the library finds no frame there.
    [[nodiscard]] static Result<std::unique_ptr<PcmReader>> create(const ByteSource& source,
                                                                   std::int64_t offset);

    [[nodiscard]] PcmFormat format() const override { return format_; }
    [[nodiscard]] std::span<const std::int16_t> next() override;
    [[nodiscard]] std::optional<Error> failure() const override { return input_->window.failure(); }
    [[nodiscard]] DecodeCount count() const override { return count_; }
    [[nodiscard]] std::int64_t sourcePosition() const override { return input_->position; }

  private:
    /// What the library's reading functions are given.
    struct Input {
        SourceWindow window; ///< the library asks for a few bytes at a time
        std::int64_t size;
        std::int64_t begin; ///< where the library's offset 0 is
        std::int64_t position;
    };
    static mpg123_ssize_t read(void* input, void* out, std::size_t bytes);
    static off_t seek(void* input, off_t offset, int origin);

    FreeFormatDecoder(std::unique_ptr<Input> input, DecoderHandle handle)
        : input_(std::move(input)), handle_(std::move(handle)) {}
    [[nodiscard]] PcmFormat currentFormat() const;

    std::unique_ptr<Input> input_; ///< at an address that stays, for the library
    DecoderHandle handle_;
    PcmFormat format_;
    PcmFormat current_;
    DecodeCount count_;
};

} // namespace sonarith::mp3
