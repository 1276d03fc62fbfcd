// SPDX-License-Identifier: GPL-3.0-or-later
// Counts the WAV files, recorded or decoded, whose save was requested and is not complete. Before
// the program ends, it waits a limited time for these saves, because a file that has no name yet is
// lost when the process ends.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace sonarith::sound {

/// Thread-safe.
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
    /// Waits at most `patience` until no save is pending; returns whether none is pending.
    bool awaitNone(std::chrono::milliseconds patience) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, patience, [this] { return count_ == 0; });
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int count_ = 0;
};

} // namespace sonarith::sound
