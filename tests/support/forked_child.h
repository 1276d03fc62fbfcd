// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a function in a child process. Use a child for a function that changes the whole process
// (limits, mounts, refused system calls) or that is to be interrupted by a kill. The parent does
// not see what the function changes in memory.
//
// A child contains only the thread that forked, but inherits the locks that other threads held at
// that moment, including those of the sanitizers' allocator. So forkWhenOthersSleep() waits until
// all other threads sleep.
#pragma once

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

#include <sys/wait.h>
#include <unistd.h>

#include "support/waiting.h"

namespace sonarith::test {

/// True if all threads of this process except the calling thread sleep.
[[nodiscard]] inline bool otherThreadsSleep() {
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream file(task.path() / "stat");
        std::string stat; // "ID (NAME) STATE ..."; empty if the thread has just ended
        std::getline(file, stat);
        const std::size_t name = stat.rfind(')');
        const bool sleeps = name != std::string::npos && stat.compare(name, 3, ") S") == 0;
        if (!sleeps && task.path().filename() != std::to_string(::gettid())) {
            return false;
        }
    }
    return true;
}

/// Waits until all other threads sleep, then forks and returns as fork() does. A child that still
/// runs after two minutes is killed. Throws if fork() fails, or if other threads still run after
/// half a minute.
[[nodiscard]] inline pid_t forkWhenOthersSleep() {
    if (!fakes::eventually(&otherThreadsSleep)) {
        throw std::runtime_error("other threads still run: a child might wait for their locks");
    }
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::runtime_error("no child process");
    }
    if (child == 0) {
        constexpr unsigned longestSeconds = 120;
        ::alarm(longestSeconds);
    }
    return child;
}

/// Runs `step` in a child process. Returns the result of `step` (0 to 255), or -1 if a signal ended
/// the child.
[[nodiscard]] inline int runInChild(const std::function<int()>& step) {
    const pid_t child = forkWhenOthersSleep();
    if (child == 0) {
        ::_exit(step());
    }
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// A child process that reports its progress until it is killed. The destructor kills it.
class ReportingChild {
  public:
    /// Writes one character to the parent.
    using Report = std::function<void(char)>;

    /// The child runs `body`, then waits for the kill.
    explicit ReportingChild(const std::function<void(const Report&)>& body) {
        int ends[2];
        if (::pipe(ends) != 0) {
            throw std::runtime_error("no pipe");
        }
        pid_ = forkWhenOthersSleep();
        if (pid_ == 0) {
            body([end = ends[1]](char report) {
                if (::write(end, &report, 1) != 1) {
                    ::_exit(1);
                }
            });
            ::pause();
            ::_exit(0);
        }
        ::close(ends[1]);
        reports_ = ends[0];
    }
    ~ReportingChild() {
        kill();
        ::close(reports_);
    }
    ReportingChild(const ReportingChild&) = delete;
    ReportingChild& operator=(const ReportingChild&) = delete;

    /// Waits for the next report and returns it; returns '\0' if the child has ended without a
    /// further report.
    [[nodiscard]] char nextReport() const {
        char report = '\0';
        return ::read(reports_, &report, 1) == 1 ? report : '\0';
    }
    /// Waits for `count` further reports. False if the child ends before it has written them.
    [[nodiscard]] bool reports(int count) const {
        for (int i = 0; i < count; ++i) {
            if (nextReport() == '\0') {
                return false;
            }
        }
        return true;
    }
    /// Kills the child. True if the child was still running.
    bool kill() {
        const pid_t child = std::exchange(pid_, 0);
        int status = 0;
        return child > 0 && ::kill(child, SIGKILL) == 0 && ::waitpid(child, &status, 0) == child &&
               WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }

  private:
    pid_t pid_ = 0;
    int reports_ = -1;
};

} // namespace sonarith::test
