// SPDX-License-Identifier: GPL-3.0-or-later
// Sources and a sink for tests of the sound card. The sources deliver computed audio, and the sink
// stores the frames that it receives. These classes start no threads.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <limits>
#include <mutex>
#include <random>
#include <span>
#include <vector>

#include "platform/linux/sound/sound_card.h"

namespace sonarith::fakes {

/// Frame `index` of the test audio: no frame is silent, and no two neighbouring frames are equal.
inline sound::StereoFrame patternFrame(std::int64_t index) {
    // 32749 and 32719 are primes below 2^15, so the pair of values repeats only after 10^9 frames.
    return {static_cast<std::int16_t>(1 + index % 32749),
            static_cast<std::int16_t>(-1 - index % 32719)};
}

inline std::vector<sound::StereoFrame> pattern(std::int64_t first, std::size_t count) {
    std::vector<sound::StereoFrame> frames;
    for (std::size_t i = 0; i < count; ++i) {
        frames.push_back(patternFrame(first + static_cast<std::int64_t>(i)));
    }
    return frames;
}

inline std::vector<sound::StereoFrame> silence(std::size_t count) {
    return std::vector<sound::StereoFrame>(count);
}

/// Delivers the test audio from frame 0 on.
class PatternSource : public sound::SampleSource {
  public:
    static constexpr std::int64_t endless = std::numeric_limits<std::int64_t>::max();
    /// `end` is the state that the source reports with its last frame and in all later pulls.
    explicit PatternSource(std::int64_t length = endless, sound::Supply end = sound::Supply::ended)
        : length_(length), end_(end) {}

    /// Until the next call of allow(), the source delivers `frames` further frames at most.
    void allow(std::int64_t frames) { allowed_ = frames; }
    /// From now on each pull delivers a random part of the requested frames, possibly none.
    void starveAtRandom(unsigned seed) {
        random_.seed(seed);
        erratic_ = true;
    }
    [[nodiscard]] std::int64_t position() const { return position_; }
    [[nodiscard]] int pulls() const { return pulls_; }

    [[nodiscard]] sound::Pulled pull(std::span<sound::StereoFrame> block) override {
        pulls_ = pulls_ + 1;
        std::int64_t count = static_cast<std::int64_t>(block.size());
        if (erratic_) {
            const std::int64_t limit = std::uniform_int_distribution<std::int64_t>(0, 600)(random_);
            count = std::min(count, limit % 2 == 0 ? 0 : limit);
        }
        count = std::min({count, allowed_.load(), length_ - position_});
        for (std::int64_t i = 0; i < count; ++i) {
            block[static_cast<std::size_t>(i)] = patternFrame(position_ + i);
        }
        position_ = position_ + count;
        if (allowed_ != endless) {
            allowed_ = allowed_ - count;
        }
        const auto frames = static_cast<std::size_t>(count);
        if (position_ == length_) {
            return {frames, end_};
        }
        return {frames, frames == block.size() ? sound::Supply::flowing : sound::Supply::starving};
    }

  private:
    std::int64_t length_;
    sound::Supply end_;
    std::atomic<std::int64_t> position_ = 0;
    std::atomic<std::int64_t> allowed_ = endless;
    std::atomic<int> pulls_ = 0;
    bool erratic_ = false;
    std::mt19937 random_;
};

/// Delivers the same frame repeatedly.
class ConstantSource : public sound::SampleSource {
  public:
    explicit ConstantSource(sound::StereoFrame frame) : frame_(frame) {}
    [[nodiscard]] sound::Pulled pull(std::span<sound::StereoFrame> block) override {
        std::fill(block.begin(), block.end(), frame_);
        return {block.size(), sound::Supply::flowing};
    }

  private:
    sound::StereoFrame frame_;
};

/// Stores every frame that it receives. Any thread may read the frames.
class MemorySink : public sound::RecordingSink, public sound::SpeakerSink {
  public:
    void record(std::span<const sound::StereoFrame> frames) override { keep(frames); }
    void play(std::span<const sound::StereoFrame> frames) override { keep(frames); }

    [[nodiscard]] std::vector<sound::StereoFrame> frames() const {
        const std::lock_guard lock(mutex_);
        return frames_;
    }
    [[nodiscard]] std::size_t size() const {
        const std::lock_guard lock(mutex_);
        return frames_.size();
    }

  private:
    void keep(std::span<const sound::StereoFrame> frames) {
        const std::lock_guard lock(mutex_);
        frames_.insert(frames_.end(), frames.begin(), frames.end());
    }

    mutable std::mutex mutex_;
    std::vector<sound::StereoFrame> frames_;
};

} // namespace sonarith::fakes
