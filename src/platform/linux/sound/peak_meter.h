// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the peak of a sound between two readings. The sound card stores the peaks and the
// logic's level meter reads them, without a lock. sound_card.h chooses the sound that is measured.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <limits>
#include <span>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

/// The largest absolute sample of both channels, 0 to 32768; 0 for no frames.
[[nodiscard]] inline int peakOf(std::span<const StereoFrame> frames) {
    int lowest = 0;
    int highest = 0;
    for (const StereoFrame& frame : frames) {
        const int left = frame.left;
        const int right = frame.right;
        lowest = std::min(lowest, std::min(left, right));
        highest = std::max(highest, std::max(left, right));
    }
    return std::max(-lowest, highest);
}

/// `note` is called by one thread at a time, `read` by any thread. Neither function blocks or
/// allocates.
class PeakMeter {
  public:
    using Time = std::chrono::nanoseconds; ///< of the card's clock

    /// After this time without a call of note(), read() returns 0. The time is that of five blocks
    /// of the card, so that the meter does not flicker if the card's thread is slightly late.
    static constexpr std::chrono::milliseconds holdTime{50};

    /// Stores the peak of a block that the card processed at `now`.
    void note(int peak, Time now) {
        lastNote_.store(now.count(), std::memory_order_relaxed);
        int before = sinceReading_.load(std::memory_order_relaxed);
        while (before < peak &&
               !sinceReading_.compare_exchange_weak(before, peak, std::memory_order_release,
                                                    std::memory_order_relaxed)) {
        }
    }

    /// Returns the largest peak since the last reading. If note() was not called since then,
    /// returns the last result; if note() was not called for holdTime, returns 0.
    [[nodiscard]] int read(Time now) {
        const int noted = sinceReading_.exchange(nothing, std::memory_order_acquire);
        if (noted != nothing) {
            held_.store(noted, std::memory_order_relaxed);
        }
        if (now.count() - lastNote_.load(std::memory_order_relaxed) >= Time(holdTime).count()) {
            held_.store(0, std::memory_order_relaxed);
        }
        return held_.load(std::memory_order_relaxed);
    }

  private:
    static constexpr int nothing = -1;

    std::atomic<int> sinceReading_ = nothing;
    /// The initial value is far in the past. It is half of the lowest number, so that no difference
    /// overflows.
    std::atomic<std::int64_t> lastNote_ = std::numeric_limits<std::int64_t>::min() / 2;
    std::atomic<int> held_ = 0;
};

} // namespace sonarith::sound
