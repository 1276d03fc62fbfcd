// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/recording_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <sys/stat.h>

#include "platform/linux/files/file_error.h"
#include "platform/linux/sound/mixing.h"

namespace sonarith::sound {

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t bytesPerSample = sizeof(std::int16_t);

} // namespace

Result<std::shared_ptr<RecordingFile>> RecordingFile::create(Channels channels,
                                                             const std::vector<fs::path>& folders,
                                                             std::int64_t longestWavBytes,
                                                             files::Concealment concealment) {
    Error failure{ErrorNumber::pathNotFound, "there is no folder to record to"};
    for (const fs::path& folder : folders) {
        Result<files::UnnamedFile> made = files::UnnamedFile::create(folder, concealment);
        if (!made.ok()) {
            failure = made.error();
            continue;
        }
        errno = 0;
        std::unique_ptr<WavWriter> writer =
            WavWriter::open(made.value().descriptor(), channels, WavForm::plain);
        if (!writer) {
            failure = files::systemError(errno != 0 ? errno : EIO, folder);
            continue;
        }
        return std::shared_ptr<RecordingFile>(
            new RecordingFile(channels, folder, std::move(made.value()), std::move(writer),
                              longestWavBytes, concealment));
    }
    return failure;
}

RecordingFile::RecordingFile(Channels channels, fs::path folder, files::UnnamedFile file,
                             std::unique_ptr<WavWriter> writer, std::int64_t longestWavBytes,
                             files::Concealment concealment)
    : channels_(channels),
      folder_(std::move(folder)),
      file_(std::move(file)),
      writer_(std::move(writer)),
      longestWavBytes_(longestWavBytes),
      concealment_(concealment) {}

void RecordingFile::record(std::span<const StereoFrame> frames) {
    std::array<std::int16_t, 2 * blockFrames> samples;
    while (!frames.empty() && writer_ && !failed()) {
        const std::span part = frames.first(std::min(frames.size(), blockFrames));
        std::size_t count = 0;
        for (const StereoFrame& frame : part) {
            if (channels_ == Channels::mono) {
                samples[count++] = meanOf(frame);
            } else {
                samples[count++] = frame.left;
                samples[count++] = frame.right;
            }
        }
        append(std::span(samples).first(count));
        frames = frames.subspan(part.size());
    }
}

void RecordingFile::append(std::span<const std::int16_t> samples) {
    const std::size_t written = writer_->write(samples);
    bytes_ += static_cast<std::int64_t>(written) * bytesPerSample;
    if (written < samples.size()) {
        failureNumber_ = writer_->errorNumber();
    }
}

Status RecordingFile::save(const fs::path& target) {
    if (const Status finished = finish(target); !finished.ok()) {
        return finished;
    }
    return file_.publish(target);
}

/// Makes the file a whole WAV, once.
Status RecordingFile::finish(const fs::path& target) {
    if (!failed() && writer_ && !writer_->finish()) {
        failureNumber_ = writer_->errorNumber();
    }
    if (failed()) {
        return files::systemError(failureNumber_, target);
    }
    if (!writer_) {
        return {};
    }
    if (bytes_ > longestWavBytes_) {
        return convertToRf64(target);
    }
    writer_.reset();
    // The last check before it gets its name: that all which was counted is really there.
    struct stat found {};
    if (::fstat(file_.descriptor().get(), &found) != 0 ||
        found.st_size != wavHeaderBytes + bytes_) {
        failureNumber_ = EIO;
        return files::systemError(EIO, target);
    }
    return {};
}

/// Copies the samples behind the larger header that recordings of more than 4 GiB (6.7 hours of
/// stereo) need. Reserving its room in each file would cost the small ones their plain header,
/// which is what every other program reads.
Status RecordingFile::convertToRf64(const fs::path& target) {
    Result<files::UnnamedFile> made = files::UnnamedFile::create(folder_, concealment_);
    if (!made.ok()) {
        return made.error();
    }
    const std::unique_ptr<WavWriter> large =
        WavWriter::open(made.value().descriptor(), channels_, WavForm::rf64);
    if (!large) {
        return files::systemError(EIO, target);
    }
    std::vector<std::int16_t> samples(64 * 1024); // large enough that the calls do not count
    for (std::int64_t done = 0; done < bytes_;) {
        const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(
            bytes_ - done, static_cast<std::int64_t>(samples.size()) * bytesPerSample));
        const ssize_t got =
            ::pread(file_.descriptor().get(), samples.data(), wanted, wavHeaderBytes + done);
        if (got != static_cast<ssize_t>(wanted)) {
            return files::systemError(got < 0 ? errno : EIO, target);
        }
        const std::size_t count = wanted / bytesPerSample;
        if (large->write(std::span(samples).first(count)) != count) {
            return files::systemError(large->errorNumber(), target);
        }
        done += got;
    }
    if (!large->finish()) {
        return files::systemError(large->errorNumber(), target);
    }
    writer_.reset();
    file_ = std::move(made.value());
    return {};
}

} // namespace sonarith::sound
