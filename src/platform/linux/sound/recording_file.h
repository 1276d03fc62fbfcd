// SPDX-License-Identifier: GPL-3.0-or-later
// A recording on the disk: a WAV file without a name until it is saved. Samples that have been
// flushed to the disk can still be saved after a later failure. The members of this class wait for
// the disk, so recording_job.h calls them on a separate thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

#include "platform/linux/files/unnamed_file.h"
#include "platform/linux/sound/sample_source.h"
#include "platform/linux/sound/wav_writer.h"
#include "platform/result.h"

namespace sonarith::sound {

/// The format is 16 bits at 44100 Hz; mono is the mean of both channels. For one thread only. If
/// the disk is slow, a call takes as long as the disk does.
class RecordingFile {
  public:
    /// Creates in `folder` a WAV without samples. `folder` should be the folder in which the
    /// recording will be saved, so that saving needs no copy. Recordings of more than
    /// `longestWavBytes` sample bytes are saved as RF64.
    [[nodiscard]] static Result<RecordingFile>
    create(Channels channels, const std::filesystem::path& folder,
           std::int64_t longestWavBytes = maxWavSampleBytes,
           files::Concealment concealment = files::Concealment::noName);

    /// Appends `frames`; returns whether failure() is still 0. After a failure nothing more is
    /// appended, so that the file has no gap. After save() nothing is appended either.
    [[nodiscard]] bool append(std::span<const StereoFrame> frames);

    /// The number of whole frames that are kept: all appended frames, or fewer after a failure.
    [[nodiscard]] std::int64_t frames() const { return frames_; }
    /// The errno value of the failure that ended the recording early; 0 if there was none.
    [[nodiscard]] int failure() const { return failure_; }

    /// Completes the WAV file and gives it the name `target` (see UnnamedFile::publish). After a
    /// failure of the disk, the saved file is a valid WAV that ends early, or save() fails if no
    /// frames are kept. May be called again, with another name or after a failed call.
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
        finishing, ///< save() has been called
        whole,     ///< the file is a complete WAV of the kept frames
    };

    Channels channels_;
    std::filesystem::path folder_;
    files::UnnamedFile file_;
    WavWriter writer_; ///< writes to file_
    std::int64_t longestWavBytes_;
    files::Concealment concealment_;
    Stage stage_ = Stage::recording;
    std::int64_t frames_ = 0;
    std::int64_t flushedFrames_ = 0; ///< number of frames known to be on the disk
    int failure_ = 0;
};

} // namespace sonarith::sound
