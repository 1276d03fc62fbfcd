// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/unnamed_file.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <random>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/linux/sound/file_error.h"

namespace sonarith::sound {

namespace {

namespace fs = std::filesystem;

/// New files are readable and writable by all, less what the user's umask takes away.
constexpr mode_t newFileMode = 0666;
/// Names that are tried before it counts as impossible to find a free one; one is enough unless
/// 64 random bits repeat.
constexpr int nameAttempts = 8;

/// An errno value; 0 is success.
using ErrorCode = int;

/// Where a file is to stand: its folder, open, and its name in it.
struct Place {
    FileDescriptor folder;
    std::string name;
    bool canFlush = true;       ///< the folder may be read, so it can be flushed too
    std::optional<mode_t> mode; ///< of the file that stands there now, if there is one
};

std::string randomHiddenName() {
    std::random_device random;
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), ".sonarith-%08x%08x", random(), random());
    return name.data();
}

/// The path that `target` means, should it be a symbolic link to a file that exists.
fs::path withoutLink(const fs::path& target) {
    std::error_code error;
    if (!fs::is_symlink(target, error)) {
        return target;
    }
    const fs::path real = fs::canonical(target, error);
    return error ? target : real;
}

/// What stands under the name may be replaced: it is nothing, or a plain file that may be written.
Status inspect(Place& place, const fs::path& target) {
    struct stat found {};
    if (::fstatat(place.folder.get(), place.name.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno == ENOENT ? Status() : Status(systemError(errno, target));
    }
    if (S_ISDIR(found.st_mode)) {
        return systemError(EISDIR, target);
    }
    if (!S_ISREG(found.st_mode)) {
        return {ErrorNumber::pathFileAccess, "\"" + target.string() + "\" is not a plain file"};
    }
    if (::faccessat(place.folder.get(), place.name.c_str(), W_OK, AT_EACCESS) != 0) {
        return systemError(errno, target);
    }
    constexpr mode_t permissions = 0777;
    place.mode = found.st_mode & permissions;
    return {};
}

Result<Place> locate(const fs::path& target) {
    if (target.native().find('\0') != std::string::npos) {
        // The system would take what stands before the NUL for the name.
        return {ErrorNumber::badFileName, "a file name cannot hold a NUL"};
    }
    const fs::path path = withoutLink(target);
    Place place;
    place.name = path.filename().string();
    if (place.name.empty() || place.name == "." || place.name == "..") {
        return systemError(EISDIR, target);
    }
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    place.folder = FileDescriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!place.folder.valid() && errno == EACCES) {
        // A folder that may be written to and not listed.
        place.folder = FileDescriptor(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        place.canFlush = false;
    }
    if (!place.folder.valid()) {
        return systemError(errno, folder);
    }
    if (const Status status = inspect(place, target); !status.ok()) {
        return status.error();
    }
    return place;
}

ErrorCode flushFolder(const Place& place) {
    // Some file systems cannot flush folders, and say EINVAL.
    const bool flushed = !place.canFlush || ::fsync(place.folder.get()) == 0 || errno == EINVAL;
    return flushed ? 0 : errno;
}

/// The mode that it passes on, then the data on the disk.
ErrorCode makeReady(const FileDescriptor& file, const Place& place) {
    if (place.mode) {
        // Not every file system has modes; the data matter more.
        static_cast<void>(::fchmod(file.get(), *place.mode));
    }
    return ::fsync(file.get()) == 0 ? 0 : errno;
}

ErrorCode link(const FileDescriptor& file, const Place& place, const std::string& name) {
    // An unnamed file is linked through its entry in /proc: the other road needs privileges.
    const std::string self = "/proc/self/fd/" + std::to_string(file.get());
    return ::linkat(AT_FDCWD, self.c_str(), place.folder.get(), name.c_str(), AT_SYMLINK_FOLLOW) ==
                   0
               ? 0
               : errno;
}

ErrorCode renameOver(const Place& place, const std::string& hiddenName) {
    if (::renameat(place.folder.get(), hiddenName.c_str(), place.folder.get(),
                   place.name.c_str()) == 0) {
        return 0;
    }
    const ErrorCode error = errno;
    ::unlinkat(place.folder.get(), hiddenName.c_str(), 0);
    return error;
}

/// Gives a ready file of the same file system its name.
ErrorCode linkInto(const FileDescriptor& file, const Place& place) {
    ErrorCode error = place.mode ? EEXIST : link(file, place, place.name);
    if (error != EEXIST) {
        return error;
    }
    // A link never replaces a file, and a rename does: so it gets a hidden name first.
    for (int attempt = 0; attempt < nameAttempts && error == EEXIST; ++attempt) {
        const std::string hiddenName = randomHiddenName();
        error = link(file, place, hiddenName);
        if (error == 0) {
            return renameOver(place, hiddenName);
        }
    }
    return error;
}

ErrorCode copyInto(const FileDescriptor& from, const FileDescriptor& to) {
    std::vector<char> buffer(256 * 1024); // large enough that the calls do not count
    off_t offset = 0;
    while (true) {
        const ssize_t count = ::pread(from.get(), buffer.data(), buffer.size(), offset);
        if (count == 0) {
            return 0;
        }
        if (count < 0) {
            return errno;
        }
        for (ssize_t done = 0; done < count;) {
            const ssize_t written =
                ::write(to.get(), buffer.data() + done, static_cast<std::size_t>(count - done));
            if (written < 0) {
                return errno;
            }
            done += written;
        }
        offset += count;
    }
}

/// For file systems without unnamed files or links: a hidden file that is renamed when it is whole.
ErrorCode copyUnderHiddenName(const FileDescriptor& file, const Place& place) {
    const std::string hiddenName = randomHiddenName();
    const FileDescriptor copy(::openat(place.folder.get(), hiddenName.c_str(),
                                       O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, newFileMode));
    if (!copy.valid()) {
        return errno;
    }
    ErrorCode error = copyInto(file, copy);
    if (error == 0) {
        error = makeReady(copy, place);
    }
    if (error != 0) {
        ::unlinkat(place.folder.get(), hiddenName.c_str(), 0);
        return error;
    }
    return renameOver(place, hiddenName);
}

ErrorCode copyAndLink(const FileDescriptor& file, const Place& place) {
    const FileDescriptor copy(
        ::openat(place.folder.get(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, newFileMode));
    if (!copy.valid()) {
        return copyUnderHiddenName(file, place);
    }
    ErrorCode error = copyInto(file, copy);
    if (error == 0) {
        error = makeReady(copy, place);
    }
    return error == 0 ? linkInto(copy, place) : error;
}

/// Whether an attempt to link failed for a reason that a copy does not share: another file system,
/// one without links, or a file that has lost the right to a name.
bool copyingHelps(ErrorCode error) {
    return error == EXDEV || error == EPERM || error == EOPNOTSUPP || error == ENOENT ||
           error == EMLINK;
}

bool hasName(const FileDescriptor& file) {
    struct stat found {};
    return ::fstat(file.get(), &found) == 0 && found.st_nlink > 0;
}

} // namespace

Result<FileDescriptor> createUnnamedFile(const fs::path& folder) {
    FileDescriptor file(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, newFileMode));
    if (file.valid()) {
        return file;
    }
    // A file system without unnamed files: one that loses its name at once does as well.
    const fs::path path = folder / randomHiddenName();
    file = FileDescriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, newFileMode));
    if (!file.valid()) {
        return systemError(errno, folder);
    }
    ::unlink(path.c_str());
    return file;
}

Status publish(const FileDescriptor& file, const fs::path& target) {
    const Result<Place> located = locate(target);
    if (!located.ok()) {
        return located.error();
    }
    const Place& place = located.value();
    ErrorCode error = EXDEV;
    if (!hasName(file)) { // a file with a name is never given a second one: both would be the same
        error = makeReady(file, place);
        if (error == 0) {
            error = linkInto(file, place);
        }
    }
    if (copyingHelps(error)) {
        error = copyAndLink(file, place);
    }
    if (error == 0) {
        error = flushFolder(place);
    }
    return error == 0 ? Status() : Status(systemError(error, target));
}

} // namespace sonarith::sound
