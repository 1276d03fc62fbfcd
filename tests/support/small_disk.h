// SPDX-License-Identifier: GPL-3.0-or-later
// Mounts a real file system of one MiB, which tests can fill. Call mountSmallDisk() in a child
// process: only that process sees the mount, and the mount is removed when that process ends.
#pragma once

#include <fstream>
#include <string>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace sonarith::test {

inline constexpr int smallDiskBytes = 1024 * 1024;
/// The exit code of a child process if the user who runs the tests has no permission to mount a
/// disk; the test is then skipped.
inline constexpr int mayNotMount = 77;

/// Gives the process its own mount namespace, which only the superuser may create. For any other
/// user, also creates a user namespace, in which this user is the superuser.
[[nodiscard]] inline bool leaveSharedMounts() {
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    if (::unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0) {
        return false;
    }
    if (user != 0) {
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
        std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    }
    return ::geteuid() == 0 && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

/// Mounts the disk on `folder` until the process ends. Returns false if the user who runs the tests
/// has no permission to mount a disk.
[[nodiscard]] inline bool mountSmallDisk(const std::string& folder) {
    return leaveSharedMounts() && ::mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=1m") == 0;
}

} // namespace sonarith::test
