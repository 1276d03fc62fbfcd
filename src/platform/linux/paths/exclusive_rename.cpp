// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/exclusive_rename.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace sonarith {

int renameByLink(const std::string& from, const std::string& to) {
    if (::link(from.c_str(), to.c_str()) == 0) {
        if (::unlink(from.c_str()) == 0) {
            return 0;
        }
        const int reason = errno;
        ::unlink(to.c_str()); // removes only the new link; the file keeps the name `from`
        return reason;
    }
    // link() fails with EPERM on file systems without hard links, and for folders. If `to` existed,
    // the error would be EEXIST, because the kernel checks this name before it calls the file
    // system. So after the errors listed here, `to` does not exist and rename() replaces no file,
    // with the exception that is described at the declaration of renameByLink().
    if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS && errno != EMLINK) {
        return errno;
    }
    return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

int renameExclusively(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    // ENOSYS: an old kernel; EINVAL: a file system that does not support RENAME_NOREPLACE.
    return errno == ENOSYS || errno == EINVAL ? renameByLink(from, to) : errno;
}

} // namespace sonarith
