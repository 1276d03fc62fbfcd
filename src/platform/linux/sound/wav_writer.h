// SPDX-License-Identifier: GPL-3.0-or-later
// Writes a WAV (16-bit samples, the sound card's sample rate) sequentially to a file that is
// already open. It neither opens nor names files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/sound/wav_header.h"

namespace sonarith::sound {

enum class Channels { mono = 1, stereo = 2 };

/// The number of sample bytes of a frame in a file with these channels.
[[nodiscard]] constexpr std::int64_t bytesPerFrame(Channels channels) {
    return static_cast<std::int64_t>(channels) * static_cast<std::int64_t>(sizeof(std::int16_t));
}

class WavWriter {
  public:
    /// writeHeader() writes at the beginning of `file`, append() behind the header. The constructor
    /// writes nothing. The file must stay open while this object is used.
    WavWriter(const files::FileDescriptor& file, Channels channels, WavForm form);

    /// Writes the header for `sampleBytes` bytes of samples; may be called again when the number
    /// has changed. False on failure.
    [[nodiscard]] bool writeHeader(std::int64_t sampleBytes);
    /// Appends interleaved samples. Returns the number of whole samples written. If it is less than
    /// the number passed, the write has failed and nothing more may be appended.
    [[nodiscard]] std::size_t append(std::span<const std::int16_t> samples);
    /// The errno value of the last failure.
    [[nodiscard]] int errorNumber() const { return errorNumber_; }

  private:
    [[nodiscard]] std::size_t write(std::span<const std::byte> bytes, std::int64_t offset);

    int file_; ///< not owned
    Channels channels_;
    WavForm form_;
    std::int64_t end_ = 0; ///< where the next samples are written: a byte offset in the file
    int errorNumber_ = 0;
};

} // namespace sonarith::sound
