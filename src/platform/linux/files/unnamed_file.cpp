// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/files/unnamed_file.h"

#include <cerrno>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/files/file_error.h"
#include "platform/linux/files/save_place.h"

namespace sonarith::files {

namespace {

namespace fs = std::filesystem;

/// New files are readable and writable by all, minus the user's umask.
constexpr mode_t newFileMode = 0666;
/// The number of attempts to find a free hidden name. One attempt is enough unless 64 random bits
/// repeat, or another process takes the new file for a leftover of a killed process and deletes it.
constexpr int nameAttempts = 8;

/// An errno value; 0 is success.
using ErrorCode = int;

/// Gives `file` the mode of the file that it replaces, then flushes its data to the disk.
ErrorCode makeReady(const FileDescriptor& file, const SavePlace& place) {
    if (place.mode) {
        // A failure is ignored: some file systems have no modes, and the data are more important.
        static_cast<void>(::fchmod(file.get(), *place.mode));
    }
    return ::fsync(file.get()) == 0 ? 0 : errno;
}

ErrorCode link(const FileDescriptor& file, const FileDescriptor& folder, const std::string& name) {
    // An unnamed file is linked through its entry in /proc: linkat with AT_EMPTY_PATH needs
    // privileges.
    const std::string self = "/proc/self/fd/" + std::to_string(file.get());
    return ::linkat(AT_FDCWD, self.c_str(), folder.get(), name.c_str(), AT_SYMLINK_FOLLOW) == 0
               ? 0
               : errno;
}

bool exists(const FileDescriptor& folder, const std::string& name) {
    struct stat found {};
    return ::fstatat(folder.get(), name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0;
}

ErrorCode copyBytes(const FileDescriptor& from, const FileDescriptor& to) {
    std::vector<char> buffer(
        256 * 1024); // large enough that the cost of the system calls does not matter
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

/// Whether copying the file avoids `error`, which occurred when the file was to get its name.
/// Copying avoids the error if the target is on another file system, if the file system has no
/// links, or if the file's hidden name was removed.
bool copyingHelps(ErrorCode error) {
    return error == EXDEV || error == EPERM || error == EOPNOTSUPP || error == ENOENT ||
           error == EMLINK;
}

} // namespace

Result<UnnamedFile> UnnamedFile::create(const fs::path& folder, Concealment concealment) {
    const FileDescriptor opened = openFolder(folder);
    if (!opened.valid()) {
        return systemError(errno, folder);
    }
    removeLeftovers(opened);
    UnnamedFile made;
    if (const ErrorCode error = made.openIn(opened, concealment); error != 0) {
        return systemError(error, folder);
    }
    return made;
}

ErrorCode UnnamedFile::openIn(const FileDescriptor& folder, Concealment concealment) {
    concealment_ = concealment;
    if (concealment == Concealment::noName) {
        file_ = FileDescriptor(
            ::openat(folder.get(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, newFileMode));
    }
    if (!file_.valid()) {
        return openUnderHiddenName(folder);
    }
    // The file may get a hidden name later. The claim then keeps other processes from deleting
    // the file as a leftover. The result is ignored, because no other process can have found a file
    // without a name.
    static_cast<void>(claim(file_));
    return 0;
}

ErrorCode UnnamedFile::openUnderHiddenName(const FileDescriptor& folder) {
    for (int attempt = 0; attempt < nameAttempts; ++attempt) {
        const std::string name = newHiddenName();
        file_ = FileDescriptor(::openat(folder.get(), name.c_str(),
                                        O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, newFileMode));
        if (!file_.valid() && errno != EEXIST) {
            return errno;
        }
        // Until the file is claimed, another process may delete it as a leftover.
        if (file_.valid() && claim(file_) && exists(folder, name)) {
            hiddenName_ = std::make_unique<HiddenName>(folder, name);
            return 0;
        }
    }
    return EEXIST;
}

ErrorCode UnnamedFile::linkUnderHiddenName(const FileDescriptor& folder) {
    ErrorCode error = EEXIST;
    for (int attempt = 0; attempt < nameAttempts && error == EEXIST; ++attempt) {
        const std::string name = newHiddenName();
        error = link(file_, folder, name);
        if (error == 0) {
            hiddenName_ = std::make_unique<HiddenName>(folder, name);
        }
    }
    return error;
}

/// Gives this file itself the name in `place`, without a copy.
ErrorCode UnnamedFile::moveTo(const SavePlace& place) {
    if (const ErrorCode error = makeReady(file_, place); error != 0) {
        return error;
    }
    if (!hiddenName_) {
        ErrorCode error = place.mode ? EEXIST : link(file_, place.folder, place.name);
        if (error == EEXIST) {
            // A link cannot replace a file, but a rename can: the file gets a hidden name first.
            error = linkUnderHiddenName(place.folder);
        }
        if (error != 0 || !hiddenName_) {
            return error;
        }
    }
    const ErrorCode error = hiddenName_->renameTo(place.folder, place.name);
    if (error == 0) {
        hiddenName_.reset();
    }
    return error;
}

ErrorCode UnnamedFile::copyTo(const SavePlace& place, Concealment concealment) const {
    UnnamedFile copy;
    ErrorCode error = copy.openIn(place.folder, concealment);
    if (error == 0) {
        error = copyBytes(file_, copy.file_);
    }
    return error == 0 ? copy.moveTo(place) : error;
}

Status UnnamedFile::publish(const fs::path& target) {
    const Result<SavePlace> located = locate(target);
    if (!located.ok()) {
        return located.error();
    }
    const SavePlace& place = located.value();
    // A file that was already published is copied. If it got a second name instead, both names
    // would refer to the same file.
    ErrorCode error = published_ ? EXDEV : moveTo(place);
    if (!published_ && error == 0) {
        published_ = true;
        unclaim(file_);
    }
    if (copyingHelps(error)) {
        // An error other than EXDEV can mean that the file system does not support links. The copy
        // then has a hidden name from the beginning: it is renamed and needs no link.
        error = copyTo(place, error == EXDEV ? concealment_ : Concealment::hiddenName);
    }
    if (error == 0) {
        error = flushFolder(place.folder);
    }
    return error == 0 ? Status() : Status(systemError(error, target));
}

} // namespace sonarith::files
