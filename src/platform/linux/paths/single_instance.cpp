// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/single_instance.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sonarith {

namespace {

/// Creates the folder and its parents with mode 0700 (XDG Base Directory Specification).
void makeFolder(const std::string& path) {
    for (std::size_t end = 0; end < path.size();) {
        end = std::min(path.find('/', end + 1), path.size());
        ::mkdir(path.substr(0, end).c_str(), S_IRWXU);
    }
}

bool belongsToThisUserAlone(const char* folder) {
    struct stat status {};
    return folder[0] == '/' && ::lstat(folder, &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

} // namespace

std::vector<std::string> instanceFolders(const std::string& storeFolder) {
    makeFolder(storeFolder);
    std::vector<std::string> folders{storeFolder};
    const char* runtimeFolder = std::getenv("XDG_RUNTIME_DIR");
    if (runtimeFolder != nullptr && belongsToThisUserAlone(runtimeFolder)) {
        folders.emplace_back(runtimeFolder);
    }
    return folders;
}

SingleInstance::SingleInstance(const std::vector<std::string>& folders) {
    for (const std::string& folder : folders) {
        if (lockIn(folder)) {
            return;
        }
    }
}

/// Returns true if this or another instance holds the lock (first_ says which), and false if the
/// file cannot be opened or locked in `folder`, so that the next folder must be tried.
bool SingleInstance::lockIn(const std::string& folder) {
    const int opened =
        ::open((folder + "/sonarith.lock").c_str(),
               O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (opened < 0) {
        return false;
    }
    int outcome = 0;
    do {
        outcome = ::flock(opened, LOCK_EX | LOCK_NB);
    } while (outcome != 0 && errno == EINTR);
    if (outcome != 0 && errno != EWOULDBLOCK) {
        ::close(opened);
        return false;
    }
    descriptor_ = opened;
    first_ = outcome == 0;
    return true;
}

SingleInstance::~SingleInstance() {
    // The file is not deleted: otherwise two instances could lock different files of the same name.
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

} // namespace sonarith
