// SPDX-License-Identifier: GPL-3.0-or-later
// A recording on the disk: a WAV file without a name until it is saved. Data that reached the disk
// can be saved whatever fails afterwards. Its calls wait for the disk; those of recording.h do not.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

#include "platform/linux/files/unnamed_file.h"
#include "platform/linux/sound/sample_source.h"
#include "platform/linux/sound/wav_writer.h"
#include "platform/result.h"

namespace sonarith::sound {

/// 16 bits, 44100 Hz; mono is the mean of both channels. For one thread only; each call takes as
/// long as the disk does.
class RecordingFile {
  public:
    /// Creates an empty file in `folder`; best is the folder in which it will be saved, as no copy
    /// is needed then. Recordings of more than `longestWavBytes` sample bytes are saved as RF64.
    [[nodiscard]] static Result<RecordingFile>
    create(Channels channels, const std::filesystem::path& folder,
           std::int64_t longestWavBytes = maxWavSampleBytes,
           files::Concealment concealment = files::Concealment::noName);

    /// False if the frames did not all reach the disk, and from then on: nothing is appended after
    /// a gap. After the first call of save it does nothing.
    [[nodiscard]] bool append(std::span<const StereoFrame> frames);

    /// The whole frames that are kept. Fewer than were appended only after a failure.
    [[nodiscard]] std::int64_t frames() const { return frames_; }
    /// The errno value of the failure that ended the recording early; 0 if there was none.
    [[nodiscard]] int failure() const { return failure_; }

    /// Gives the kept frames the name `target` in one step, as `UnnamedFile::publish` does, also
    /// after a failure: as a valid WAV that ends early. Fails if a failure has left no frames. May
    /// be called again: for another name, or after it has failed.
    [[nodiscard]] Status save(const std::filesystem::path& target);

  private:
    RecordingFile(Channels channels, std::filesystem::path folder, files::UnnamedFile file,
                  const WavWriter& writer, std::int64_t longestWavBytes,
                  files::Concealment concealment);
    [[nodiscard]] std::int64_t bytes() const { return frames_ * bytesPerFrame(channels_); }
    [[nodiscard]] bool keepsNothing() const { return failure_ != 0 && frames_ == 0; }
    [[nodiscard]] bool write(std::span<const StereoFrame> frames);
    void endEarly(int error, std::int64_t keptFrames);
    // These return an errno value; 0 is success.
    [[nodiscard]] int flush();
    [[nodiscard]] int truncateToKeptFrames();
    [[nodiscard]] int finishInPlace();
    // `target` is used only in error messages.
    [[nodiscard]] Status finish(const std::filesystem::path& target);
    [[nodiscard]] Status rewrite(WavForm form, const std::filesystem::path& target);

    /// The stages of the file.
    enum class Stage {
        recording,
        finishing, ///< a save was tried
        whole,     ///< it is a complete WAV of the kept frames
    };

    Channels channels_;
    std::filesystem::path folder_;
    files::UnnamedFile file_;
    WavWriter writer_; ///< to file_
    std::int64_t longestWavBytes_;
    files::Concealment concealment_;
    Stage stage_ = Stage::recording;
    std::int64_t frames_ = 0;
    std::int64_t flushedFrames_ = 0; ///< those that are known to be on the disk
    int failure_ = 0;
};

} // namespace sonarith::sound
