// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/waiting.h"

#include <algorithm>
#include <thread>

namespace sonarith {

namespace {

using Clock = std::chrono::steady_clock;

/// restFor() sleeps only after this time.
constexpr std::chrono::microseconds timeAwake{100};

} // namespace

void Completion::complete() {
    const std::lock_guard lock(mutex_);
    complete_ = true;
    changed_.notify_all();
}

bool Completion::isComplete() const {
    const std::lock_guard lock(mutex_);
    return complete_;
}

bool Completion::restFor(std::chrono::milliseconds bound) const {
    const Clock::time_point begin = Clock::now();
    const auto awake = std::min<Clock::duration>(timeAwake, bound);
    while (!complete_ && Clock::now() - begin < awake) {
        std::this_thread::yield();
    }
    std::unique_lock lock(mutex_);
    return changed_.wait_until(lock, begin + bound, [this] { return complete_.load(); });
}

Waiting::Outcome PlainWaiting::wait(const Completion& completion, Duration bound) {
    return completion.restFor(bound) ? Outcome::done : Outcome::late;
}

} // namespace sonarith
