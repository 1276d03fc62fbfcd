// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/file_handle.h"

#include <cerrno>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sonarith::disc {

namespace {

/// The end of an error message; the caller of open() puts the file's name before it.
Error causeOf(int systemError) {
    switch (systemError) {
    case ENOENT:
    case ENOTDIR:
        return {ErrorNumber::fileNotFound, "the file does not exist"};
    case EACCES:
    case EPERM:
        return {ErrorNumber::permissionDenied, "you have no permission to read it"};
    case ENAMETOOLONG:
        return {ErrorNumber::badFileName, "the name is too long for the file system"};
    default:
        return {ErrorNumber::deviceInputOutput, std::generic_category().message(systemError)};
    }
}

} // namespace

Result<FileHandle> FileHandle::open(const std::filesystem::path& path) {
    FileHandle handle;
    handle.path_ = path;
    // Without O_NONBLOCK, opening a named pipe would block until another process opens it for
    // writing.
    handle.descriptor_ =
        files::FileDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status = {};
    if (!handle.descriptor_.valid() || ::fstat(handle.descriptor(), &status) != 0) {
        return causeOf(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return {ErrorNumber::pathFileAccess, "it is not a regular file"};
    }
    handle.bytes_ = status.st_size;
    handle.device_ = status.st_dev;
    handle.inode_ = status.st_ino;
    handle.modified_ = status.st_mtim;
    return handle;
}

bool FileHandle::stillThere() const {
    struct stat status = {};
    return ::stat(path_.c_str(), &status) == 0 && status.st_dev == device_ &&
           status.st_ino == inode_;
}

bool FileHandle::unchanged() const {
    struct stat status = {};
    return ::stat(path_.c_str(), &status) == 0 && status.st_dev == device_ &&
           status.st_ino == inode_ && status.st_size == bytes_ &&
           status.st_mtim.tv_sec == modified_.tv_sec && status.st_mtim.tv_nsec == modified_.tv_nsec;
}

std::size_t FileHandle::readAt(std::int64_t offset, std::span<std::byte> out) const {
    std::size_t done = 0;
    while (done < out.size()) {
        const auto count = ::pread(descriptor(), out.data() + done, out.size() - done,
                                   offset + static_cast<std::int64_t>(done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    return done;
}

} // namespace sonarith::disc
