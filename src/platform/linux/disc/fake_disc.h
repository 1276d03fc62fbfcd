// SPDX-License-Identifier: GPL-3.0-or-later
// A disc in which each frame encodes its position on the time line. Tests can block the reads
// of the disc, list all reads, and simulate the removal of the disc. For tests only.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {

/// The frame at position `index` of a fake disc's time line; no two frames are equal.
inline sound::StereoFrame frameAt(std::int64_t index) {
    return {static_cast<std::int16_t>(index & 0xffff), static_cast<std::int16_t>(index >> 16)};
}

/// The `count` frames from position `first` on.
inline std::vector<sound::StereoFrame> framesAt(std::int64_t first, std::int64_t count) {
    std::vector<sound::StereoFrame> frames;
    for (std::int64_t i = first; i < first + count; ++i) {
        frames.push_back(frameAt(i));
    }
    return frames;
}

class FakeDisc : public Disc {
  public:
    struct Read {
        std::int64_t first;
        std::int64_t end; ///< one past the last sector
    };

    explicit FakeDisc(std::vector<Track> tracks) { table_.tracks = std::move(tracks); }

    const Table& table() const override { return table_; }
    std::string remark() const override { return {}; }
    Damage damageIn(std::int64_t, std::int64_t) const override { return {}; }

    /// Blocks every read from now on until release().
    void hold() {
        const std::lock_guard lock(mutex_);
        held_ = true;
    }
    void release() {
        const std::lock_guard lock(mutex_);
        held_ = false;
        changed_.notify_all();
    }
    /// Makes reads of `sector` or any later sector return `gone`.
    void vanishFrom(std::int64_t sector) {
        const std::lock_guard lock(mutex_);
        goneFrom_ = sector;
    }
    /// Waits until `count` reads have begun since the disc was made.
    void waitForReads(std::size_t count) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return reads_.size() >= count; });
    }
    /// All reads that have begun, in order.
    std::vector<Read> reads() const {
        const std::lock_guard lock(mutex_);
        return reads_;
    }
    /// One past the highest sector that was ever requested.
    std::int64_t furthest() const {
        std::int64_t end = 0;
        for (const Read& read : reads()) {
            end = std::max(end, read.end);
        }
        return end;
    }

  private:
    // Ignores stop requests, like a device that hangs.
    ReadOutcome readSectors(std::int64_t first, std::span<sound::StereoFrame> out,
                            const std::stop_token& /*stop*/) override {
        std::unique_lock lock(mutex_);
        const auto sectors = static_cast<std::int64_t>(out.size()) / framesPerSector;
        reads_.push_back({first, first + sectors});
        changed_.notify_all();
        changed_.wait(lock, [this] { return !held_; });
        if (first + sectors > goneFrom_) {
            return ReadOutcome::gone;
        }
        for (std::size_t i = 0; i < out.size(); ++i) {
            out[i] = frameAt(first * framesPerSector + static_cast<std::int64_t>(i));
        }
        return ReadOutcome::ok;
    }

    Table table_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    bool held_ = false;
    std::int64_t goneFrom_ = INT64_MAX;
    std::vector<Read> reads_;
};

} // namespace sonarith::disc
