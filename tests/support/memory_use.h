// SPDX-License-Identifier: GPL-3.0-or-later
// Reads how much memory this process uses, for tests that check by how much this amount grows.
#pragma once

#include <cstdint>
#include <fstream>

#include <unistd.h>

namespace sonarith::test {

/// Resident memory of this process in KiB.
inline std::int64_t memoryInKibibytes() {
    std::ifstream in("/proc/self/statm");
    std::int64_t total = 0;
    std::int64_t resident = 0;
    in >> total >> resident;
    return resident * ::sysconf(_SC_PAGESIZE) / 1024;
}

} // namespace sonarith::test
