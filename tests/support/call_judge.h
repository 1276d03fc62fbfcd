// SPDX-License-Identifier: GPL-3.0-or-later
// Intercepts chosen system calls of a function. A callback of the test decides on each call: the
// call is let through, fails, or is held as if a device hung. Only the thread that runs
// the function and the threads that this thread starts are affected, and only until the function
// returns.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <future>
#include <thread>
#include <vector>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace sonarith::test {

class CallJudge {
  public:
    /// Results of a Verdict: `letThrough` executes the call, `hold` holds it until release(). Any
    /// other result is the errno value with which the call fails.
    static constexpr int letThrough = 0;
    static constexpr int hold = -1;
    /// Decides on one call after the other, on a thread of its own. If `write` is intercepted, some
    /// of the calls may be those of a sanitizer.
    using Verdict = std::function<int(const seccomp_data& call)>;

    /// Runs `body` on a thread of its own. Intercepts the calls with these numbers (SYS_...) that
    /// this thread or a thread started by it makes. Calls that are still held when `body` returns
    /// are released. Returns when the last of these threads has ended. Returns false, without
    /// running `body`, if the kernel does not support the interception.
    [[nodiscard]] static bool run(const std::vector<std::uint32_t>& numbers, Verdict verdict,
                                  const std::function<void(CallJudge&)>& body) {
        CallJudge judge(std::move(verdict));
        std::promise<int> listener;
        std::thread supervisor(
            [&, opened = listener.get_future()]() mutable { judge.serve(opened.get()); });
        bool installed = false;
        std::thread intercepted([&] {
            const int opened = install(numbers);
            listener.set_value(opened);
            installed = opened >= 0;
            if (installed) {
                body(judge);
            }
            if (!judge.released_) {
                judge.release();
            }
        });
        intercepted.join();
        supervisor.join();
        return installed;
    }

    /// Simulates that the device responds again: from now on every new call is let through. The
    /// held calls are let through, too, or fail if `error` is an errno value.
    void release(int error = letThrough) {
        heldVerdict_ = error;
        released_ = true;
    }
    /// The number of calls that are held now.
    [[nodiscard]] int held() const { return held_; }

  private:
    explicit CallJudge(Verdict verdict) : verdict_(std::move(verdict)) {}

    /// Installs the filter for the calling thread. Returns the descriptor from which the
    /// intercepted calls are read, or -1.
    static int install(const std::vector<std::uint32_t>& numbers) {
        std::vector<sock_filter> steps{
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
        for (const std::uint32_t number : numbers) {
            steps.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 1));
            steps.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF));
        }
        steps.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
        const sock_fprog program{static_cast<unsigned short>(steps.size()), steps.data()};
        if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
            return -1;
        }
        return static_cast<int>(::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER,
                                          SECCOMP_FILTER_FLAG_NEW_LISTENER, &program));
    }

    void serve(int listener) {
        if (listener < 0) {
            return;
        }
        std::vector<std::uint64_t> heldCalls;
        // Polls with a timeout instead of waiting for release(): a system call with which release()
        // could end the wait might itself be intercepted.
        constexpr int lookUpMilliseconds = 2;
        for (pollfd calls{listener, POLLIN, 0};;) {
            calls.revents = 0;
            ::poll(&calls, 1, lookUpMilliseconds);
            if ((calls.revents & POLLIN) != 0) {
                seccomp_notif call{};
                if (::ioctl(listener, SECCOMP_IOCTL_NOTIF_RECV, &call) == 0) {
                    const int verdict = released_ ? letThrough : verdict_(call.data);
                    if (verdict == hold) {
                        heldCalls.push_back(call.id);
                        ++held_;
                    } else {
                        answer(listener, call.id, verdict);
                    }
                }
            }
            if (released_) {
                for (const std::uint64_t id : heldCalls) {
                    answer(listener, id, heldVerdict_);
                    --held_;
                }
                heldCalls.clear();
            }
            if ((calls.revents & POLLHUP) != 0) { // no thread with the filter is left
                ::close(listener);
                return;
            }
        }
    }

    static void answer(int listener, std::uint64_t id, int verdict) {
        seccomp_notif_resp response{};
        response.id = id;
        response.error = -verdict;
        response.flags = verdict == letThrough ? SECCOMP_USER_NOTIF_FLAG_CONTINUE : 0;
        ::ioctl(listener, SECCOMP_IOCTL_NOTIF_SEND, &response);
    }

    Verdict verdict_;
    std::atomic<bool> released_ = false;
    std::atomic<int> heldVerdict_ = letThrough;
    std::atomic<int> held_ = 0;
};

} // namespace sonarith::test
