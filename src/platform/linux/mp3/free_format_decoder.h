// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes MP3 streams in free format, in one pass over the whole stream. libmpg123 ("the library")
// determines the size of their frames, so the library must also find the frames. Not for other
// streams.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/linux/mp3/frame_decoder.h"
#include "platform/linux/mp3/pcm_reader.h"

namespace sonarith::mp3 {

class FreeFormatDecoder : public PcmReader {
  public:
    /// The limit for `work_`, in frames. A decoder of the library gives up some damaged frames: it
    /// stops decoding them half-way. Each time, this costs 3 ns (measured) for each frame that the
    /// same decoder has decoded before. So one decoder would need hours for a long stream of
    /// damaged frames. Each time the current decoder gives up a frame, `work_` grows by the number
    /// of frames that this decoder has decoded so far. When `work_` reaches this limit (a third of
    /// a second of work), a new decoder replaces the current one.
    ///
    /// The library does not report a frame that it gives up, but such a frame ends in silence. So
    /// every frame that ends in silence counts as given up. A replacement happens only after such a
    /// frame, so no sound is lost.
    static constexpr std::int64_t usualPatience = 100'000'000;

    /// Reads `source` from `offset` on. Null if the library finds no frame from `offset` on.
    [[nodiscard]] static Result<std::unique_ptr<FreeFormatDecoder>>
    create(const ByteSource& source, std::int64_t offset, std::int64_t patience = usualPatience);

    [[nodiscard]] PcmFormat format() const override { return format_; }
    [[nodiscard]] std::span<const std::int16_t> next() override;
    [[nodiscard]] std::optional<Error> failure() const override { return input_->window.failure(); }
    [[nodiscard]] DecodeCount count() const override { return count_; }
    [[nodiscard]] std::int64_t sourcePosition() const override { return input_->position; }
    /// How many times a new decoder of the library has replaced the former one.
    [[nodiscard]] int renewals() const { return renewals_; }

  private:
    /// The state of the library's read callbacks.
    struct Input {
        SourceWindow window; ///< the library reads a few bytes at a time
        std::int64_t size;
        std::int64_t begin; ///< the source offset that is the library's offset 0
        std::int64_t position;
    };
    static mpg123_ssize_t read(void* input, void* out, std::size_t bytes);
    static off_t seek(void* input, off_t offset, int origin);

    FreeFormatDecoder(std::unique_ptr<Input> input, DecoderHandle handle, std::int64_t patience)
        : input_(std::move(input)), handle_(std::move(handle)), patience_(patience) {}
    [[nodiscard]] static Result<DecoderHandle> open(Input& input, std::int64_t offset);
    [[nodiscard]] static std::optional<PcmFormat> formatOf(const DecoderHandle& handle);
    [[nodiscard]] std::span<const std::int16_t> decodeFrame();
    void noteWork(std::span<const std::int16_t> samples);
    [[nodiscard]] bool renew();

    std::unique_ptr<Input> input_; ///< on the heap, since the library keeps its address
    DecoderHandle handle_;
    PcmFormat format_;
    PcmFormat current_;
    DecodeCount count_;
    std::int64_t patience_;
    std::int64_t frames_ = 0; ///< decoded by the current decoder
    /// Grows by frames_ when a decoded frame ends in silence. Reset to 0 when a new decoder
    /// replaces the current one.
    std::int64_t work_ = 0;
    int renewals_ = 0;
};

} // namespace sonarith::mp3
