// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a function in a child process and kills the child at a chosen system call. With one run for
// each call, a test covers every state that a kill can leave on the disk. The kill is
// triggered by the call and not by a timer.
#pragma once

#include <csignal>
#include <functional>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/forked_child.h"

namespace sonarith::test {

enum class KillOutcome {
    killed,
    finished, ///< the function returned before it made the chosen call
    failed    ///< the child could not be traced, or it ended in an unexpected way
};

/// Runs `prepare` and then `step` in a child process. Kills the child (SIGKILL) just before system
/// call number `call` of `step`, counted from 0. The exit of the child after `step` counts as a
/// call, too. A child that is not killed ends with _exit(): it destroys no object of the caller.
inline KillOutcome killAtCall(int call, const std::function<void()>& prepare,
                              const std::function<void()>& step) {
    const pid_t child = forkWhenOthersSleep();
    if (child == 0) {
        prepare();
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0) {
            ::raise(SIGSTOP); // from here on, the parent counts the calls
            step();
            ::_exit(0);
        }
        ::_exit(1);
    }
    int status = 0;
    // The child first stops at its own signal, then before and after each call.
    for (int stops = -1; ::waitpid(child, &status, 0) == child && WIFSTOPPED(status); ++stops) {
        if (stops == 2 * call || ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0) {
            ::kill(child, SIGKILL);
        }
    }
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) {
        return KillOutcome::killed;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? KillOutcome::finished
                                                         : KillOutcome::failed;
}

} // namespace sonarith::test
