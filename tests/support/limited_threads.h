// SPDX-License-Identifier: GPL-3.0-or-later
// Simulates a machine on which only a few more threads can be started.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

#include "platform/thread_start.h"

namespace sonarith::fakes {

/// Counts the threads that can still be started. starter() returns a function that starts a thread
/// or, when no more threads can be started, returns an error; the function may outlive this object.
/// All members and the function are thread-safe.
class LimitedThreads {
  public:
    explicit LimitedThreads(int left) : counts_(std::make_shared<Counts>()) {
        counts_->left = left;
    }

    [[nodiscard]] ThreadStarter starter() const {
        return [counts = counts_](std::function<void()> body) -> Result<std::thread> {
            if (counts->left-- > 0) {
                return startThread(std::move(body));
            }
            ++counts->left;
            ++counts->refused;
            return Error{ErrorNumber::deviceUnavailable, "no more threads can be started"};
        };
    }
    /// Allows `threads` more threads.
    void free(int threads) { counts_->left += threads; }
    [[nodiscard]] int refused() const { return counts_->refused; }

  private:
    struct Counts {
        std::atomic<int> left = 0;
        std::atomic<int> refused = 0;
    };
    std::shared_ptr<Counts> counts_;
};

} // namespace sonarith::fakes
