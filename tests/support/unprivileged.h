// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a function as a user without privileges, so that file permissions apply even if the
// superuser runs the tests. The function runs in a child process: the test does not see what the
// function changes in memory.
#pragma once

#include <functional>

#include <grp.h>
#include <unistd.h>

#include "support/forked_child.h"

namespace sonarith::test {

/// Returns the result of `step` (0 to 99); 100 or more if `step` did not run or did not return.
inline int runUnprivileged(const std::function<int()>& step) {
    const int answer = runInChild([&] {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0 &&
            (::setgroups(0, nullptr) != 0 || ::setresgid(nobody, nobody, nobody) != 0 ||
             ::setresuid(nobody, nobody, nobody) != 0)) {
            return 100;
        }
        return step();
    });
    return answer < 0 ? 101 : answer;
}

} // namespace sonarith::test
