// SPDX-License-Identifier: GPL-3.0-or-later
// A disk that hangs: chosen system calls of some threads do not return until they are released.
//
//     HeldCalls disk({SYS_fsync});
//     disk.run([&] { control.Stop().passOver(); });   // on a thread of its own
//     EXPECT_TRUE(disk.waitForCall());                // its thread, or one that it made, is held
//     disk.release();
//
// Only threads that `run` creates, and their own threads, are held: the test itself continues and
// detects calls that never return.
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
    /// Which of the calls are held; by default all of them. Pointers among the arguments can be
    /// read.
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

    /// Runs `body` on a thread whose calls can be held; returns whether it finished in time. A body
    /// that did not finish continues, and the destructor waits for it.
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
                    while (!released_) { // after `body` the judge releases the held calls
                        std::this_thread::sleep_for(std::chrono::milliseconds(1));
                    }
                });
            EXPECT_TRUE(judged) << "this kernel cannot hold calls (Linux 5.5 can)";
            *done = true;
        });
        return fakes::eventually([&] { return done->load(); });
    }
    /// Sets what the destructor runs after the bodies have finished: it destroys objects whose
    /// threads end only then. Such objects must be declared before this one, since a body that did
    /// not finish in time still creates them.
    void atEnd(std::function<void()> step) { atEnd_ = std::move(step); }
    /// Whether a call is held, now or within half a minute.
    bool waitForCall() {
        return fakes::eventually([this] { return held_ > 0; });
    }
    /// From now on no call is held. May be called on any thread.
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
    std::vector<CallJudge*> judges_; ///< each exists until it is released
    std::vector<std::thread> threads_;
    std::vector<std::shared_ptr<std::atomic<bool>>> done_; ///< for each body
    std::function<void()> atEnd_;
};

/// The path of an open file of this process; a file without a name has one that ends in
/// "(deleted)".
[[nodiscard]] inline std::string pathOfDescriptor(std::uint64_t descriptor) {
    std::string path(4096, '\0');
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    path.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return path;
}

/// The text that an argument points to. The kernel reads it: the other thread is waiting in the
/// call, but the thread sanitizer does not know that.
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
