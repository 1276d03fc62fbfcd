// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/byte_source.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/linux/files/file_error.h"

namespace sonarith::mp3 {

namespace fs = std::filesystem;

namespace {

/// Large enough that the cost of system calls does not matter, small enough that each of many
/// threads can have a window.
constexpr std::size_t windowBytes = 48 * 1024;

FileIdentity identityIn(const struct stat& found) {
    return {found.st_dev, found.st_ino, found.st_size, found.st_mtim.tv_sec, found.st_mtim.tv_nsec};
}

/// `error` is an errno value.
Error readError(int error) {
    return {files::systemError(error, {}).number, std::generic_category().message(error)};
}

} // namespace

Reading MemorySource::readAt(std::int64_t offset, std::span<std::uint8_t> out) const {
    const Bytes part = bytes_.subspan(static_cast<std::size_t>(offset), out.size());
    std::copy(part.begin(), part.end(), out.begin());
    return {out.size(), std::nullopt};
}

std::optional<FileIdentity> FileIdentity::of(const fs::path& path) {
    struct stat found {};
    return ::stat(path.c_str(), &found) == 0 ? std::optional(identityIn(found)) : std::nullopt;
}

std::optional<FileIdentity> FileIdentity::of(const files::FileDescriptor& file) {
    struct stat found {};
    return ::fstat(file.get(), &found) == 0 ? std::optional(identityIn(found)) : std::nullopt;
}

Result<std::unique_ptr<FileSource>> FileSource::open(const fs::path& path,
                                                     const std::atomic<bool>& stop) {
    if (path.native().find('\0') != std::string::npos) {
        return {ErrorNumber::badFileName, "a file name cannot contain a NUL byte"};
    }
    // Non-blocking: otherwise, the opening of a pipe without a writer would not return.
    files::FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat found {};
    if (!file.valid() || ::fstat(file.get(), &found) != 0) {
        return readError(errno);
    }
    if (S_ISDIR(found.st_mode)) {
        return readError(EISDIR);
    }
    if (!S_ISREG(found.st_mode)) {
        return {ErrorNumber::pathFileAccess, "not a regular file"};
    }
    return std::unique_ptr<FileSource>(new FileSource(std::move(file), identityIn(found), stop));
}

Reading FileSource::readAt(std::int64_t offset, std::span<std::uint8_t> out) const {
    std::size_t done = 0;
    while (done < out.size()) {
        if (*stop_) {
            return {done, readError(ECANCELED)};
        }
        const ssize_t got = ::pread(file_.get(), out.data() + done, out.size() - done,
                                    offset + static_cast<std::int64_t>(done));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return {done, readError(errno)};
        }
        if (got == 0) {
            return {done, Error{ErrorNumber::deviceInputOutput, "the file was truncated"}};
        }
        done += static_cast<std::size_t>(got);
    }
    return {done, std::nullopt};
}

SourceWindow::SourceWindow(const ByteSource& source) : source_(&source), store_(windowBytes) {}

/// After a read that failed at some offset, the bytes before that offset are returned from the
/// window, and the offset is not read again: a disk may take seconds to fail.
bool SourceWindow::mustRead(std::int64_t offset, std::int64_t wanted) const {
    const bool beforeBadPlace = failure_ && offset <= end();
    return offset < start_ || (offset + wanted > end() && !beforeBadPlace);
}

Bytes SourceWindow::at(std::int64_t offset) {
    const std::int64_t left = source_->size() - offset;
    if (left <= 0) {
        return {};
    }
    if (mustRead(offset, std::min(left, static_cast<std::int64_t>(lookAhead)))) {
        const auto count =
            static_cast<std::size_t>(std::min(left, static_cast<std::int64_t>(store_.size())));
        Reading reading = source_->readAt(offset, std::span(store_).first(count));
        start_ = offset;
        filled_ = reading.bytes;
        failure_ = std::move(reading.failure);
    }
    const auto first = static_cast<std::size_t>(offset - start_);
    return Bytes(store_).subspan(first, filled_ - first);
}

} // namespace sonarith::mp3
