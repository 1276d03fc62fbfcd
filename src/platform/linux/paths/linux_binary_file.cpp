// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/linux_binary_file.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>

#include <fcntl.h>
#include <unistd.h>

#include "platform/linux/files/file_error.h"

namespace sonarith {

namespace {

static_assert(sizeof(off_t) == sizeof(std::int64_t),
              "off_t needs 64 bits, since files may be larger than 2 GiB");

constexpr std::int64_t largestOffset = std::numeric_limits<std::int64_t>::max();

int flagsOf(FileAccess access) {
    // Without O_NONBLOCK, ::open() would block if a pipe replaced the file after
    // LinuxBinaryFile::open() checked that the file is regular.
    constexpr int always = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    switch (access) {
    case FileAccess::read:
        return always | O_RDONLY;
    case FileAccess::write:
        return always | O_WRONLY | O_CREAT;
    case FileAccess::readWrite:
        break;
    }
    return always | O_RDWR | O_CREAT;
}

} // namespace

int refusalOf(const struct stat& status) {
    if (S_ISREG(status.st_mode)) {
        return 0;
    }
    return S_ISDIR(status.st_mode) ? EISDIR : EACCES;
}

FileTime fileTimeOf(const timespec& changed) {
    using std::chrono::nanoseconds;
    using std::chrono::seconds;
    constexpr seconds latest = std::chrono::floor<seconds>(nanoseconds::max()) - seconds(1);
    constexpr seconds earliest = std::chrono::ceil<seconds>(nanoseconds::min());
    const seconds whole = std::clamp(seconds(changed.tv_sec), earliest, latest);
    const nanoseconds sinceEpoch = whole + nanoseconds(changed.tv_nsec);
    return FileTime(std::chrono::duration_cast<FileTime::duration>(sinceEpoch));
}

Result<std::unique_ptr<BinaryFile>> LinuxBinaryFile::open(const std::string& machinePath,
                                                          FileAccess access) {
    struct stat status {};
    if (::stat(machinePath.c_str(), &status) == 0) {
        if (const int refusal = refusalOf(status); refusal != 0) {
            return fileErrorOfSystem(refusal);
        }
    }
    constexpr mode_t defaultMode = 0666; // minus the umask
    files::FileDescriptor opened(::open(machinePath.c_str(), flagsOf(access), defaultMode));
    if (!opened.valid() || ::fstat(opened.get(), &status) != 0) {
        return fileErrorOfSystem(errno);
    }
    // The file may have been replaced since the first check.
    if (const int refusal = refusalOf(status); refusal != 0) {
        return fileErrorOfSystem(refusal);
    }
    return std::unique_ptr<BinaryFile>(new LinuxBinaryFile(std::move(opened), access));
}

Result<std::int64_t> LinuxBinaryFile::length() const {
    struct stat status {};
    if (::fstat(opened_.get(), &status) != 0) {
        return fileErrorOfSystem(errno);
    }
    return static_cast<std::int64_t>(status.st_size);
}

Result<std::size_t> LinuxBinaryFile::read(std::int64_t offset, std::span<std::byte> into) {
    if (offset < 0) {
        return fileError(ErrorNumber::badRecordNumber);
    }
    if (access_ == FileAccess::write) {
        return fileError(ErrorNumber::badFileMode);
    }
    // The system refuses a read that would end beyond the largest offset, so such a read is
    // shortened. No byte is missed, because no file is that long.
    const auto wanted = static_cast<std::size_t>(
        std::min<std::uint64_t>(into.size(), static_cast<std::uint64_t>(largestOffset - offset)));
    std::size_t done = 0;
    while (done < wanted) {
        const ssize_t count = ::pread(opened_.get(), into.data() + done, wanted - done,
                                      offset + static_cast<std::int64_t>(done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return fileErrorOfSystem(errno);
        }
        if (count == 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    return done;
}

Status LinuxBinaryFile::write(std::int64_t offset, std::span<const std::byte> bytes) {
    if (offset < 0) {
        return fileError(ErrorNumber::badRecordNumber);
    }
    if (access_ == FileAccess::read) {
        return fileError(ErrorNumber::badFileMode);
    }
    if (bytes.size() > static_cast<std::uint64_t>(largestOffset - offset)) {
        return fileErrorOfSystem(EFBIG);
    }
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::pwrite(opened_.get(), bytes.data() + done, bytes.size() - done,
                                       offset + static_cast<std::int64_t>(done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return fileErrorOfSystem(count < 0 ? errno : EIO);
        }
        done += static_cast<std::size_t>(count);
    }
    return {};
}

} // namespace sonarith
