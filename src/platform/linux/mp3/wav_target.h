// SPDX-License-Identifier: GPL-3.0-or-later
// Creates a WAV: several threads write samples to their positions in an unnamed file, in any order;
// at the end the file gets its header and its name. The class does not track which samples are
// missing.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

#include "platform/linux/files/unnamed_file.h"
#include "platform/linux/mp3/pcm_reader.h"
#include "platform/linux/sound/wav_writer.h"
#include "platform/result.h"

namespace sonarith::mp3 {

class WavTarget {
  public:
    /// Creates the unnamed file in the folder of `target`; an existing `target` is not changed yet.
    /// WAVs of more than `longestWavBytes` sample bytes become RF64.
    [[nodiscard]] static Result<std::unique_ptr<WavTarget>>
    create(const std::filesystem::path& target, const PcmFormat& format,
           std::int64_t longestWavBytes = sound::maxWavSampleBytes,
           files::Concealment concealment = files::Concealment::noName);

    /// Writes interleaved samples; the first of them has number `first` in its channel.
    [[nodiscard]] Status place(std::int64_t first, std::span<const std::int16_t> samples);
    /// Keeps the first `samples` samples of each channel, drops the others, and frees their space.
    /// No other thread may be writing.
    [[nodiscard]] Status truncateTo(std::int64_t samples);
    /// Ends the WAV after `samples` samples per channel, all of which must have been placed, and
    /// gives the file the name `target` of create(). Returns how many samples per channel the WAV
    /// contains: on a full disk an RF64 file loses the last few samples, because the RF64 header
    /// needs their space. A failure changes `target` only as UnnamedFile::publish() describes.
    /// Blocks until the file is flushed to the disk.
    [[nodiscard]] Result<std::int64_t> finish(std::int64_t samples);

  private:
    WavTarget(std::filesystem::path target, const PcmFormat& format, files::UnnamedFile file,
              std::int64_t longestWavBytes)
        : target_(std::move(target)),
          format_(format),
          file_(std::move(file)),
          longestWavBytes_(longestWavBytes) {}
    [[nodiscard]] std::int64_t bytesPerFrame() const;
    [[nodiscard]] Status truncateFile(std::int64_t bytes);
    [[nodiscard]] Status write(std::int64_t offset, std::span<const std::uint8_t> bytes);
    [[nodiscard]] std::int64_t roomFor(std::int64_t samples, std::int64_t distance);
    [[nodiscard]] Status moveUp(std::int64_t bytes, std::int64_t distance);

    std::filesystem::path target_;
    PcmFormat format_;
    files::UnnamedFile file_;
    std::int64_t longestWavBytes_;
};

} // namespace sonarith::mp3
