// SPDX-License-Identifier: GPL-3.0-or-later
// Counts the saves that were asked for and are not finished, so that the end of the program can
// give them a moment: what has no name when the process ends is lost.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace sonarith::sound {

/// Any thread may call any member.
class PendingSaves {
  public:
    void add() {
        const std::lock_guard lock(mutex_);
        ++count_;
    }
    void remove() {
        const std::lock_guard lock(mutex_);
        --count_;
        changed_.notify_all();
    }
    /// Waits, for `patience` at most, until there are none; returns whether that is so.
    bool noneWithin(std::chrono::milliseconds patience) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, patience, [this] { return count_ == 0; });
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int count_ = 0;
};

} // namespace sonarith::sound
