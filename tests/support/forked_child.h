// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a step in a child process, for steps that change the whole process (limits, mounts, refused
// system calls) or that a kill must interrupt. Changes of memory are not visible in the parent.
//
// A child has only the thread that forked, but also the locks that other threads held at that
// moment, those of the sanitizers' allocator included. So a fork waits until all of them sleep.
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

/// True if no thread of this process but the calling one is running, or about to run.
[[nodiscard]] inline bool otherThreadsSleep() {
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream file(task.path() / "stat");
        std::string stat; // empty if the thread has just ended; the state follows the name
        std::getline(file, stat);
        const std::size_t name = stat.rfind(')');
        const bool sleeps = name != std::string::npos && stat.compare(name, 3, ") S") == 0;
        if (!sleeps && task.path().filename() != std::to_string(::gettid())) {
            return false;
        }
    }
    return true;
}

/// As fork(), once all other threads sleep. A child that hangs is killed after two minutes.
/// Throws if there is no child, or if the other threads still run after half a minute.
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

/// The value (0 to 255) that `step` returns in a child process; -1 if the child ended in another
/// way.
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

    /// The next report; '\0' if the child ended before.
    [[nodiscard]] char nextReport() const {
        char report = '\0';
        return ::read(reports_, &report, 1) == 1 ? report : '\0';
    }
    /// True if the child gives `count` more reports.
    [[nodiscard]] bool reports(int count) const {
        for (int i = 0; i < count; ++i) {
            if (nextReport() == '\0') {
                return false;
            }
        }
        return true;
    }
    /// True if the child ran until now.
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
