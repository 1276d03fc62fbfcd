// SPDX-License-Identifier: GPL-3.0-or-later
// A recording: what the card's recorder hears, as a WAV on the disk that has no name until it is
// saved. Nothing of it is kept in memory. It does not decide where it is saved.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

#include "platform/linux/files/unnamed_file.h"
#include "platform/linux/sound/sound_card.h"
#include "platform/linux/sound/wav_writer.h"
#include "platform/result.h"

namespace sonarith::sound {

/// 16 bits, 44100 Hz; mono is the mean of both channels. `record` comes from the card; `bytes` and
/// `failed` may be asked by any thread; `save` is for after the recording was stopped.
class RecordingFile : public RecordingSink {
  public:
    /// Takes the first of `folders` in which an unnamed file can be made; best is the one that it
    /// will be saved in, as it needs no copy then. Fails, with the last folder's reason, if there
    /// is none. Recordings of more than `longestWavBytes` sample bytes are saved as RF64.
    [[nodiscard]] static Result<std::shared_ptr<RecordingFile>>
    create(Channels channels, const std::vector<std::filesystem::path>& folders,
           std::int64_t longestWavBytes = maxWavSampleBytes,
           files::Concealment concealment = files::Concealment::noName);

    void record(std::span<const StereoFrame> frames) override;

    /// Bytes of samples that have been recorded so far.
    [[nodiscard]] std::int64_t bytes() const { return bytes_; }
    /// A write has failed (a full disk); nothing more is recorded since, and nothing can be saved.
    [[nodiscard]] bool failed() const { return failureNumber_ != 0; }

    /// Puts the recording under the name `target` in one step, as `publish` does. What is recorded
    /// afterwards is ignored. May be called again: for another name, or after a failure.
    [[nodiscard]] Status save(const std::filesystem::path& target);

  private:
    RecordingFile(Channels channels, std::filesystem::path folder, files::UnnamedFile file,
                  std::unique_ptr<WavWriter> writer, std::int64_t longestWavBytes,
                  files::Concealment concealment);
    void append(std::span<const std::int16_t> samples);
    [[nodiscard]] Status finish(const std::filesystem::path& target);
    [[nodiscard]] Status convertToRf64(const std::filesystem::path& target);

    Channels channels_;
    std::filesystem::path folder_;
    files::UnnamedFile file_;
    std::unique_ptr<WavWriter> writer_; ///< empty once the header is right
    std::int64_t longestWavBytes_;
    files::Concealment concealment_;
    std::atomic<std::int64_t> bytes_ = 0;
    std::atomic<int> failureNumber_ = 0; ///< errno value
};

} // namespace sonarith::sound
