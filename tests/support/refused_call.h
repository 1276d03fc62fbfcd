// SPDX-License-Identifier: GPL-3.0-or-later
// Makes a system call fail until the process ends, to simulate a file system that is damaged or
// lacks a feature. Call these functions in a child process, since the failure cannot be switched
// off.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

namespace sonarith::test {

/// Makes every system call with this number fail with `error` (an errno value), for the calling
/// thread and the threads that it starts later. Returns false if the kernel does not support this.
[[nodiscard]] inline bool refuseCall(std::uint32_t number, std::uint32_t error) {
    sock_filter steps[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{sizeof(steps) / sizeof(steps[0]), steps};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

/// Simulates a file system that does not support file locks.
[[nodiscard]] inline bool refuseFileLocks() {
    return refuseCall(SYS_flock, ENOLCK);
}

/// Simulates a file system that does not support hard links, so that an unnamed file cannot get a
/// name.
[[nodiscard]] inline bool refuseLinks() {
    return refuseCall(SYS_linkat, EPERM);
}

/// Simulates a damaged disk from which files cannot be read.
[[nodiscard]] inline bool refuseReads() {
    return refuseCall(SYS_read, EIO) && refuseCall(SYS_pread64, EIO);
}

/// Simulates a damaged disk on which files cannot be renamed: renameat() and renameat2() fail. The
/// system call rename(), which some architectures have, still succeeds.
[[nodiscard]] inline bool refuseRenames() {
    bool refused = refuseCall(SYS_renameat2, EIO);
#ifdef SYS_renameat // some architectures have no such call
    refused = refused && refuseCall(SYS_renameat, EIO);
#endif
    return refused;
}

} // namespace sonarith::test
