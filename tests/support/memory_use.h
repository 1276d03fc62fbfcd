// SPDX-License-Identifier: GPL-3.0-or-later
// How much memory this process uses, for tests that hold it against a bound.
#pragma once

#include <cstdint>
#include <fstream>

#include <unistd.h>

namespace sonarith::test {

/// Kibibytes of this process that are in memory now.
inline std::int64_t memoryInKibibytes() {
    std::ifstream in("/proc/self/statm");
    std::int64_t total = 0;
    std::int64_t resident = 0;
    in >> total >> resident;
    return resident * ::sysconf(_SC_PAGESIZE) / 1024;
}

} // namespace sonarith::test
