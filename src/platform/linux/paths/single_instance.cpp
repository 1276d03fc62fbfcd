// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/single_instance.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/paths/program_folder.h"

namespace sonarith {

namespace {

bool belongsToThisUserAlone(const char* folder) {
    struct stat status {};
    return folder[0] == '/' && ::lstat(folder, &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

} // namespace

std::string instanceFolder() {
    const char* runtimeFolder = std::getenv("XDG_RUNTIME_DIR");
    if (runtimeFolder != nullptr && belongsToThisUserAlone(runtimeFolder)) {
        return runtimeFolder;
    }
    const std::string folder = userDataFolder() + "/sonarith";
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    return folder;
}

SingleInstance::SingleInstance(const std::string& folder)
    : descriptor_(::open((folder + "/sonarith.lock").c_str(),
                         O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                         S_IRUSR | S_IWUSR)) {
    if (descriptor_ < 0) {
        return;
    }
    int outcome = 0;
    do {
        outcome = ::flock(descriptor_, LOCK_EX | LOCK_NB);
    } while (outcome != 0 && errno == EINTR);
    first_ = outcome == 0 || errno != EWOULDBLOCK;
}

SingleInstance::~SingleInstance() {
    // The file stays: to remove it could leave two programs with locks on two files of one name.
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

} // namespace sonarith
