// SPDX-License-Identifier: GPL-3.0-or-later
// Tracks the progress of a job; thread-safe. The position runs from 0 to the same constant for a
// job of any size. So it fits into 32 bits, and callers always divide it by the same number.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>

namespace sonarith::mp3 {

class Progress {
  public:
    /// The value of position() when all work is done. A million steps are enough for any display.
    static constexpr std::int32_t length = 1'000'000;

    /// Call before the work begins. `bytes` may be 0.
    void setTotal(std::int64_t bytes) { total_ = std::max<std::int64_t>(bytes, 1); }
    [[nodiscard]] std::int64_t total() const { return total_; }
    void add(std::int64_t bytes) { done_ += bytes; }
    /// Sets the finished work to at least `bytes`. The position never decreases, even if a part of
    /// the work is repeated.
    void raiseTo(std::int64_t bytes) {
        std::int64_t before = done_;
        while (before < bytes && !done_.compare_exchange_weak(before, bytes)) {
        }
    }
    /// From 0 to length.
    [[nodiscard]] std::int32_t position() const {
        const double part = static_cast<double>(done_) / static_cast<double>(total_);
        return static_cast<std::int32_t>(length * std::clamp(part, 0.0, 1.0));
    }

  private:
    std::atomic<std::int64_t> total_ = 1;
    std::atomic<std::int64_t> done_ = 0;
};

} // namespace sonarith::mp3
