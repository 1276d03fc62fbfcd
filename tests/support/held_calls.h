// SPDX-License-Identifier: GPL-3.0-or-later
// Simulates a disk that hangs: chosen system calls of some threads do not return until the test
// releases them.
//
//     HeldCalls disk({SYS_fsync});
//     disk.run([&] { control.Stop().passOver(); });   // on a thread of its own
//     EXPECT_TRUE(disk.waitForCall());                // an fsync is held
//     disk.release();
//
// Only the threads that `run` creates, and the threads started by them, can be held. The
// test's own thread continues, so it can detect that a function does not return.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <sys/uio.h>

#include "support/call_judge.h"
#include "support/waiting.h"

namespace sonarith::test {

class HeldCalls {
  public:
    /// Returns true if the call must be held. Without a Choice, every call whose number was passed
    /// to the constructor is held. A Choice may read the memory that an argument points to
    /// (textAt()).
    using Choice = std::function<bool(const seccomp_data& call)>;

    explicit HeldCalls(std::vector<std::uint32_t> numbers, Choice choice = nullptr)
        : numbers_(std::move(numbers)), choice_(std::move(choice)) {}
    /// Releases all calls, and waits until every thread that can be held has ended.
    ~HeldCalls() {
        release();
        for (const auto& done : done_) {
            while (!*done) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
        if (atEnd_) {
            atEnd_();
        }
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }
    HeldCalls(const HeldCalls&) = delete;
    HeldCalls& operator=(const HeldCalls&) = delete;

    /// Runs `body` on a thread that can be held. Returns true when `body` has finished, or false
    /// after half a minute. `body` then continues, and the destructor waits for it.
    bool run(std::function<void()> body) {
        const auto done = std::make_shared<std::atomic<bool>>(false);
        done_.push_back(done);
        threads_.emplace_back([this, done, body = std::move(body)] {
            const bool judged = CallJudge::run(
                numbers_, [this](const seccomp_data& call) { return verdictOn(call); },
                [&](CallJudge& judge) {
                    add(judge);
                    body();
                    *done = true;
                    // When this lambda returns, the judge releases the held calls of the threads
                    // that `body` started. These calls must stay held until release() is called, so
                    // the lambda waits for release().
                    while (!released_) {
                        std::this_thread::sleep_for(std::chrono::milliseconds(1));
                    }
                });
            EXPECT_TRUE(judged) << "this kernel cannot hold calls (Linux 5.5 can)";
            *done = true;
        });
        return fakes::eventually([&] { return done->load(); });
    }
    /// Sets a function that the destructor calls after all bodies have finished. Use it to destroy
    /// objects whose threads would otherwise not end. Declare the variables of such objects before
    /// this HeldCalls: a body that has not finished in time may still assign to the variables.
    void atEnd(std::function<void()> step) { atEnd_ = std::move(step); }
    /// Returns true as soon as a call has been held, or false after half a minute.
    bool waitForCall() {
        return fakes::eventually([this] { return held_ > 0; });
    }
    /// Releases all held calls; from now on no call is held. May be called on any thread.
    void release() {
        const std::lock_guard lock(mutex_);
        for (CallJudge* judge : std::exchange(judges_, {})) {
            judge->release();
        }
        released_ = true;
    }

  private:
    void add(CallJudge& judge) {
        const std::lock_guard lock(mutex_);
        if (released_) {
            judge.release();
        } else {
            judges_.push_back(&judge);
        }
    }
    int verdictOn(const seccomp_data& call) {
        if (released_ || (choice_ && !choice_(call))) {
            return CallJudge::letThrough;
        }
        ++held_;
        return CallJudge::hold;
    }

    std::vector<std::uint32_t> numbers_;
    Choice choice_;
    std::atomic<bool> released_ = false;
    std::atomic<int> held_ = 0;
    std::mutex mutex_;
    std::vector<CallJudge*> judges_; ///< each judge exists until it is released
    std::vector<std::thread> threads_;
    std::vector<std::shared_ptr<std::atomic<bool>>> done_; ///< for each body: whether it is done
    std::function<void()> atEnd_;
};

/// The path of an open file of this process. If the file has no name, the path ends in "(deleted)".
[[nodiscard]] inline std::string pathOfDescriptor(std::uint64_t descriptor) {
    std::string path(4096, '\0');
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    path.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return path;
}

/// The text at `address`, to which an argument of an intercepted call points. The kernel copies the
/// text, because the thread sanitizer would report a direct read as a data race.
[[nodiscard]] inline std::string textAt(std::uint64_t address) {
    std::string text(4096, '\0');
    const iovec to{text.data(), text.size()};
    const iovec from{reinterpret_cast<void*>(address), text.size()};
    const ssize_t length = ::process_vm_readv(::getpid(), &to, 1, &from, 1, 0);
    text.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return text.substr(0, text.find('\0'));
}

/// Selects calls on files whose path contains `part`.
[[nodiscard]] inline HeldCalls::Choice ofPath(std::string part) {
    return [part = std::move(part)](const seccomp_data& call) {
        const bool named = call.nr == SYS_openat || call.nr == SYS_newfstatat;
        const std::string path = named ? textAt(call.args[1]) : pathOfDescriptor(call.args[0]);
        return path.find(part) != std::string::npos;
    };
}

} // namespace sonarith::test
