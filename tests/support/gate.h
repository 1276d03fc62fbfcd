// SPDX-License-Identifier: GPL-3.0-or-later
// A gate that blocks threads while it is closed, as a hanging device does. For tests; any thread
// may call any member.
#pragma once

#include <condition_variable>
#include <mutex>

namespace sonarith::fakes {

class Gate {
  public:
    void close() {
        const std::lock_guard lock(mutex_);
        closed_ = true;
    }
    void open() {
        const std::lock_guard lock(mutex_);
        closed_ = false;
        changed_.notify_all();
    }
    /// Waits while the gate is closed.
    void pass() {
        std::unique_lock lock(mutex_);
        ++arrived_;
        changed_.notify_all();
        changed_.wait(lock, [this] { return !closed_; });
    }
    /// Waits until pass() has been called `count` times since the gate was created.
    void waitForArrivals(int count) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return arrived_ >= count; });
    }
    [[nodiscard]] int arrivals() const {
        const std::lock_guard lock(mutex_);
        return arrived_;
    }

  private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    bool closed_ = false;
    int arrived_ = 0;
};

} // namespace sonarith::fakes
