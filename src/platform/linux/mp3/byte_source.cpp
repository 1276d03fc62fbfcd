// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/byte_source.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/linux/files/file_error.h"

namespace sonarith::mp3 {

namespace fs = std::filesystem;

namespace {

/// Large enough that the system calls do not count, small enough for one on each of many cores.
constexpr std::size_t windowBytes = 48 * 1024;

FileIdentity identityIn(const struct stat& found) {
    return {found.st_dev, found.st_ino, found.st_size, found.st_mtim.tv_sec, found.st_mtim.tv_nsec};
}

} // namespace

Status MemorySource::readAt(std::int64_t offset, std::span<std::uint8_t> out) const {
    const Bytes part = bytes_.subspan(static_cast<std::size_t>(offset), out.size());
    std::copy(part.begin(), part.end(), out.begin());
    return {};
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
        return {ErrorNumber::badFileName, "a file name cannot hold a NUL"};
    }
    // Non-blocking, since opening a pipe that nobody writes to would not return.
    files::FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat found {};
    if (!file.valid() || ::fstat(file.get(), &found) != 0) {
        return files::systemError(errno, path);
    }
    if (S_ISDIR(found.st_mode)) {
        return files::systemError(EISDIR, path);
    }
    if (!S_ISREG(found.st_mode)) {
        return {ErrorNumber::pathFileAccess, "\"" + path.string() + "\" is not a plain file"};
    }
    return std::unique_ptr<FileSource>(
        new FileSource(path, std::move(file), identityIn(found), stop));
}

Status FileSource::readAt(std::int64_t offset, std::span<std::uint8_t> out) const {
    while (!out.empty()) {
        if (*stop_) {
            return files::systemError(ECANCELED, path_);
        }
        const ssize_t got = ::pread(file_.get(), out.data(), out.size(), offset);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return files::systemError(got < 0 ? errno : EIO, path_);
        }
        out = out.subspan(static_cast<std::size_t>(got));
        offset += got;
    }
    return {};
}

SourceWindow::SourceWindow(const ByteSource& source) : source_(&source), store_(windowBytes) {}

Bytes SourceWindow::at(std::int64_t offset) {
    const std::int64_t left = source_->size() - offset;
    if (left <= 0 || failure_) {
        return {};
    }
    const auto wanted = static_cast<std::size_t>(
        std::min(left, static_cast<std::int64_t>(SourceWindow::lookAhead)));
    const std::int64_t end = start_ + static_cast<std::int64_t>(filled_);
    if (offset < start_ || offset + static_cast<std::int64_t>(wanted) > end) {
        filled_ =
            static_cast<std::size_t>(std::min(left, static_cast<std::int64_t>(store_.size())));
        start_ = offset;
        const Status status = source_->readAt(offset, std::span(store_).first(filled_));
        if (!status.ok()) {
            failure_ = status.error();
            filled_ = 0;
            return {};
        }
    }
    const auto first = static_cast<std::size_t>(offset - start_);
    return Bytes(store_).subspan(first, filled_ - first);
}

} // namespace sonarith::mp3
