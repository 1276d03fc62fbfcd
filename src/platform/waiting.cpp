// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/waiting.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace sonarith {

namespace {

using Clock = std::chrono::steady_clock;

/// After this time, restFor() stops yielding and sleeps; after a long yield, it sleeps earlier.
constexpr std::chrono::microseconds timeAwake{100};
/// A yield that takes at least this long shows that the processor is busy: another process has run
/// for a time slice of the scheduler, which is about 3 ms.
constexpr std::chrono::milliseconds longYield{1};
/// For this time after a long yield, restFor() sleeps at once on the same thread. When each wait on
/// a busy processor began with a yield, the program's start took twice as long.
constexpr std::chrono::milliseconds timeWithoutYields{500};

/// Yields the processor until `complete` is true, timeAwake has passed or a yield was long. Does
/// nothing within timeWithoutYields after a long yield on the same thread.
void stayAwake(const std::atomic<bool>& complete) {
    thread_local Clock::time_point nextYield;
    const Clock::time_point begin = Clock::now();
    Clock::time_point now = begin;
    while (!complete && now >= nextYield && now - begin < timeAwake) {
        std::this_thread::yield();
        const Clock::time_point before = std::exchange(now, Clock::now());
        if (now - before >= longYield) {
            nextYield = now + timeWithoutYields;
        }
    }
}

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
    if (bound > timeAwake) {
        stayAwake(complete_);
    }
    std::unique_lock lock(mutex_);
    return changed_.wait_until(lock, begin + bound, [this] { return complete_.load(); });
}

Waiting::Outcome PlainWaiting::wait(const Completion& completion, Duration bound) {
    return completion.restFor(bound) ? Outcome::done : Outcome::late;
}

} // namespace sonarith
