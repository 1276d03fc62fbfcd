// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a step as a user without privileges, so that permissions apply even if the superuser runs
// the tests. The step runs in a child process: its changes of memory are not visible afterwards.
#pragma once

#include <functional>

#include <grp.h>
#include <unistd.h>

#include "support/forked_child.h"

namespace sonarith::test {

/// The value (0 to 99) that `step` returns; 100 or more if the step was not reached.
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
