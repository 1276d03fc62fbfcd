// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/wav_target.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "platform/linux/files/file_error.h"
#include "platform/linux/mp3/wav_header.h"

namespace sonarith::mp3 {

namespace fs = std::filesystem;

Result<std::unique_ptr<WavTarget>> WavTarget::create(const fs::path& target,
                                                     const PcmFormat& format,
                                                     std::int64_t longestWavBytes,
                                                     files::Concealment concealment) {
    if (target.native().find('\0') != std::string::npos) {
        return {ErrorNumber::badFileName, "a file name cannot contain a NUL byte"};
    }
    if (!target.has_filename()) {
        return {ErrorNumber::badFileName, "the file name is empty"};
    }
    std::error_code noSuchFile;
    if (fs::is_directory(target, noSuchFile)) { // reported now rather than after the decoding
        return files::systemError(EISDIR, target);
    }
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    Result<files::UnnamedFile> file = files::UnnamedFile::create(folder, concealment);
    if (!file.ok()) {
        return file.error();
    }
    return std::unique_ptr<WavTarget>(
        new WavTarget(target, format, std::move(file.value()), longestWavBytes));
}

std::int64_t WavTarget::bytesPerFrame() const {
    return format_.channels * static_cast<std::int64_t>(sizeof(std::int16_t));
}

Status WavTarget::place(std::int64_t first, std::span<const std::int16_t> samples) {
    const std::int64_t offset = sound::wavHeaderBytes + first * bytesPerFrame();
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(samples.data()),
                          samples.size_bytes());
    Status status = write(offset, bytes);
    if (status.ok()) {
        // Starts writing to the disk at once, so that little remains for the end. A failure is
        // ignored: the call is only a hint, which some file systems do not support.
        static_cast<void>(::sync_file_range(file_.descriptor().get(), offset,
                                            static_cast<off_t>(bytes.size()),
                                            SYNC_FILE_RANGE_WRITE));
    }
    return status;
}

Status WavTarget::write(std::int64_t offset, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t written =
            ::pwrite(file_.descriptor().get(), bytes.data(), bytes.size(), offset);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return files::systemError(written < 0 ? errno : EIO, target_);
        }
        bytes = bytes.subspan(static_cast<std::size_t>(written));
        offset += written;
    }
    return {};
}

Result<std::int64_t> WavTarget::finish(std::int64_t samples) {
    const bool large = samples * bytesPerFrame() > longestWavBytes_;
    // The file is first cut after the last sample that is kept. On a full disk, only this can
    // free space for the larger RF64 header.
    if (const Status status = truncateTo(samples); !status.ok()) {
        return status.error();
    }
    if (large) {
        const std::int64_t distance = rf64HeaderBytes - sound::wavHeaderBytes;
        samples = roomFor(samples, distance);
        if (const Status status = moveUp(samples * bytesPerFrame(), distance); !status.ok()) {
            return status.error();
        }
    }
    const std::int64_t bytes = samples * bytesPerFrame();
    const std::vector<std::uint8_t> header =
        large ? rf64Header(format_, bytes) : plainWavHeader(format_, bytes);
    Status status = write(0, header);
    if (status.ok()) {
        status = truncateFile(static_cast<std::int64_t>(header.size()) + bytes);
    }
    if (status.ok()) {
        status = file_.publish(target_);
    }
    return status.ok() ? Result(samples) : status.error();
}

Status WavTarget::truncateTo(std::int64_t samples) {
    return truncateFile(sound::wavHeaderBytes + samples * bytesPerFrame());
}

Status WavTarget::truncateFile(std::int64_t bytes) {
    return ::ftruncate(file_.descriptor().get(), bytes) == 0
               ? Status()
               : Status(files::systemError(errno, target_));
}

/// How many of `samples` can be moved by `distance` bytes towards the end of the file. If the disk
/// has no space for a longer file, the samples must stay within the file's present length.
std::int64_t WavTarget::roomFor(std::int64_t samples, std::int64_t distance) {
    const std::vector<std::uint8_t> beyond(static_cast<std::size_t>(distance));
    const bool hasRoom = write(sound::wavHeaderBytes + samples * bytesPerFrame(), beyond).ok();
    return hasRoom ? samples : samples - (distance + bytesPerFrame() - 1) / bytesPerFrame();
}

/// Makes space for the larger header: moves the samples towards the end of the file, the last ones
/// first. The space is not reserved when the file is created: the samples of a small file must
/// directly follow the smaller plain header.
Status WavTarget::moveUp(std::int64_t bytes, std::int64_t distance) {
    std::vector<std::uint8_t> block(
        256 * 1024); // large enough that the cost of system calls does not matter
    for (std::int64_t left = bytes; left > 0;) {
        const auto count = std::min<std::int64_t>(left, static_cast<std::int64_t>(block.size()));
        const std::int64_t offset = sound::wavHeaderBytes + left - count;
        const std::span part = std::span(block).first(static_cast<std::size_t>(count));
        const ssize_t got = ::pread(file_.descriptor().get(), part.data(), part.size(), offset);
        if (got != count) {
            return files::systemError(got < 0 ? errno : EIO, target_);
        }
        if (Status written = write(offset + distance, part); !written.ok()) {
            return written;
        }
        left -= count;
    }
    return {};
}

} // namespace sonarith::mp3
