// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/files/save_place.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/files/file_error.h"

namespace sonarith::files {

namespace {

namespace fs = std::filesystem;

/// If `target` is a symbolic link to an existing file, the path of that file; otherwise `target`.
fs::path withoutLink(const fs::path& target) {
    std::error_code error;
    if (!fs::is_symlink(target, error)) {
        return target;
    }
    const fs::path real = fs::canonical(target, error);
    return error ? target : real;
}

/// Succeeds if the name is free, or if it belongs to a regular file with write permission.
Status inspect(SavePlace& place, const fs::path& target) {
    struct stat found {};
    if (::fstatat(place.folder.get(), place.name.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno == ENOENT ? Status() : Status(systemError(errno, target));
    }
    if (S_ISDIR(found.st_mode)) {
        return systemError(EISDIR, target);
    }
    if (!S_ISREG(found.st_mode)) {
        return {ErrorNumber::pathFileAccess, "\"" + target.string() + "\" is not a regular file"};
    }
    if (::faccessat(place.folder.get(), place.name.c_str(), W_OK, AT_EACCESS) != 0) {
        return systemError(errno, target);
    }
    constexpr mode_t permissions = 0777;
    place.mode = found.st_mode & permissions;
    return {};
}

} // namespace

Result<SavePlace> locate(const fs::path& target) {
    if (target.native().find('\0') != std::string::npos) {
        // The system would take the part before the NUL as the name.
        return {ErrorNumber::badFileName, "a file name cannot contain a NUL byte"};
    }
    const fs::path path = withoutLink(target);
    SavePlace place;
    place.name = path.filename().string();
    if (place.name.empty() || place.name == "." || place.name == "..") {
        return systemError(EISDIR, target);
    }
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    place.folder = openFolder(folder);
    if (!place.folder.valid()) {
        return systemError(errno, folder);
    }
    if (const Status status = inspect(place, target); !status.ok()) {
        return status.error();
    }
    return place;
}

FileDescriptor openFolder(const fs::path& folder) {
    FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened.valid() && errno == EACCES) {
        opened = FileDescriptor(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    }
    return opened;
}

int flushFolder(const FileDescriptor& folder) {
    // Some file systems cannot flush folders: fsync() fails with EINVAL. It fails with EBADF for a
    // folder without read permission, which is open with O_PATH only.
    return ::fsync(folder.get()) == 0 || errno == EINVAL || errno == EBADF ? 0 : errno;
}

} // namespace sonarith::files
