// SPDX-License-Identifier: GPL-3.0-or-later
// A machine that has few threads left, for code that starts some.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

#include "platform/thread_start.h"

namespace sonarith::fakes {

/// Starts as many threads as it has left, and refuses further ones. Thread-safe; its starter may
/// outlive it.
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
            return Error{ErrorNumber::deviceUnavailable, "no thread is left"};
        };
    }
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
