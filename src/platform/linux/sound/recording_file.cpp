// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/recording_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/files/file_error.h"
#include "platform/linux/sound/mixing.h"

namespace sonarith::sound {

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t bytesPerSample = sizeof(std::int16_t);
/// The most frames that one call of RecordingFile::write() writes.
constexpr std::size_t framesPerWrite = 4096;
/// After every 5 s of sound (about as often as the system itself writes files to the disk), the
/// recording is flushed to the disk, so that a save has little left to flush. If a disk accepts
/// samples but later fails to store them (for example in a full network folder), only the last 5 s
/// are lost and not the whole recording.
constexpr std::int64_t framesPerFlush = std::int64_t{5} * frameRate;

} // namespace

Result<RecordingFile> RecordingFile::create(Channels channels, const fs::path& folder,
                                            std::int64_t longestWavBytes,
                                            files::Concealment concealment) {
    Result<files::UnnamedFile> made = files::UnnamedFile::create(folder, concealment);
    if (!made.ok()) {
        return made.error();
    }
    WavWriter writer(made.value().descriptor(), channels, WavForm::plain);
    if (!writer.writeHeader(0)) {
        return files::systemError(writer.errorNumber(), folder);
    }
    return RecordingFile(channels, folder, std::move(made.value()), writer, longestWavBytes,
                         concealment);
}

RecordingFile::RecordingFile(Channels channels, fs::path folder, files::UnnamedFile file,
                             const WavWriter& writer, std::int64_t longestWavBytes,
                             files::Concealment concealment)
    : channels_(channels),
      folder_(std::move(folder)),
      file_(std::move(file)),
      writer_(writer),
      longestWavBytes_(longestWavBytes),
      concealment_(concealment) {}

bool RecordingFile::append(std::span<const StereoFrame> frames) {
    while (!frames.empty() && stage_ == Stage::recording && failure_ == 0) {
        const std::span part = frames.first(std::min(frames.size(), framesPerWrite));
        if (write(part) && frames_ - flushedFrames_ >= framesPerFlush) {
            if (const int error = flush(); error != 0) {
                endEarly(error, flushedFrames_);
            }
        }
        frames = frames.subspan(part.size());
    }
    return failure_ == 0;
}

/// Precondition: `frames` has at most framesPerWrite frames.
bool RecordingFile::write(std::span<const StereoFrame> frames) {
    std::array<std::int16_t, 2 * framesPerWrite> samples;
    std::size_t count = 0;
    for (const StereoFrame& frame : frames) {
        if (channels_ == Channels::mono) {
            samples[count++] = meanOf(frame);
        } else {
            samples[count++] = frame.left;
            samples[count++] = frame.right;
        }
    }
    const std::size_t written = writer_.append(std::span(samples).first(count));
    const std::size_t whole = written / static_cast<std::size_t>(channels_);
    frames_ += static_cast<std::int64_t>(whole);
    if (written < count) {
        endEarly(writer_.errorNumber(), frames_);
        return false;
    }
    return true;
}

/// If this fails, data written since the last successful flush may be missing on the disk.
int RecordingFile::flush() {
    if (::fdatasync(file_.descriptor().get()) != 0) {
        return errno;
    }
    flushedFrames_ = frames_;
    return 0;
}

void RecordingFile::endEarly(int error, std::int64_t keptFrames) {
    failure_ = error;
    frames_ = keptFrames;
}

Status RecordingFile::save(const fs::path& target) {
    if (const Status finished = finish(target); !finished.ok()) {
        return finished;
    }
    return file_.publish(target);
}

/// Makes the file a complete WAV; no effect if it is already complete.
Status RecordingFile::finish(const fs::path& target) {
    if (stage_ == Stage::whole) {
        return {};
    }
    stage_ = Stage::finishing;
    if (keepsNothing()) {
        return files::systemError(failure_, target);
    }
    if (bytes() > longestWavBytes_) {
        if (rewrite(WavForm::rf64, target).ok()) {
            return {};
        }
        // The copy could not be written, most likely for lack of space: only the part that fits
        // into a plain WAV is kept.
        endEarly(EFBIG, longestWavBytes_ / bytesPerFrame(channels_));
    }
    const int error = finishInPlace();
    if (error == 0) {
        stage_ = Stage::whole;
        return {};
    }
    // Although the file could not be completed in place, writing a copy of the samples with a new
    // header can still succeed.
    return keepsNothing() ? files::systemError(error, target) : rewrite(WavForm::plain, target);
}

int RecordingFile::finishInPlace() {
    int error = truncateToKeptFrames();
    if (error == 0) {
        error = flush();
        if (error != 0) {
            // Samples that were written after the last successful flush may be lost, although the
            // disk accepted them. Earlier samples are safe.
            endEarly(error, flushedFrames_);
            if (frames_ > 0) {
                error = truncateToKeptFrames();
                error = error == 0 ? flush() : error;
            }
        }
    }
    if (error != 0) {
        return error;
    }
    // The last check before the file gets its name: it must contain all counted frames.
    struct stat found {};
    if (::fstat(file_.descriptor().get(), &found) != 0 ||
        found.st_size != wavHeaderBytes + bytes()) {
        return EIO;
    }
    return 0;
}

int RecordingFile::truncateToKeptFrames() {
    if (failure_ != 0 && ::ftruncate(file_.descriptor().get(), wavHeaderBytes + bytes()) != 0) {
        return errno;
    }
    return writer_.writeHeader(bytes()) ? 0 : writer_.errorNumber();
}

/// Copies the kept frames to a new file with a header of `form`. Recordings of more than 4 GiB (6.8
/// hours of stereo) need a larger header. If space for it were reserved from the start, small files
/// would lack the plain header that all other programs read.
Status RecordingFile::rewrite(WavForm form, const fs::path& target) {
    Result<files::UnnamedFile> made = files::UnnamedFile::create(folder_, concealment_);
    if (!made.ok()) {
        return made.error();
    }
    WavWriter copy(made.value().descriptor(), channels_, form);
    if (!copy.writeHeader(bytes())) {
        return files::systemError(copy.errorNumber(), target);
    }
    std::vector<std::int16_t> samples(
        64 * 1024); // large enough that the cost of system calls does not matter
    for (std::int64_t done = 0; done < bytes();) {
        const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(
            bytes() - done, static_cast<std::int64_t>(samples.size()) * bytesPerSample));
        const ssize_t got =
            ::pread(file_.descriptor().get(), samples.data(), wanted, wavHeaderBytes + done);
        if (got != static_cast<ssize_t>(wanted)) {
            return files::systemError(got < 0 ? errno : EIO, target);
        }
        const std::size_t count = wanted / bytesPerSample;
        if (copy.append(std::span(samples).first(count)) != count) {
            return files::systemError(copy.errorNumber(), target);
        }
        done += got;
    }
    file_ = std::move(made.value());
    stage_ = Stage::whole;
    return {};
}

} // namespace sonarith::sound
