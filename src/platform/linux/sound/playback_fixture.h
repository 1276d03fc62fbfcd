// SPDX-License-Identifier: GPL-3.0-or-later
// A playback device for tests, which stores what is played and can be made to fail or to hang. Also
// contains the fixture of the tests of playback_pump.h, which uses this device.
#pragma once

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "platform/linux/sound/playback_pump.h"
#include "support/fake_sound.h"

namespace sonarith::sound {

/// The state of a fake device. It outlives the FakePlayback object, so that a test can inspect the
/// state.
struct PlaybackDevice {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<StereoFrame> played;    ///< all written frames
    std::deque<long> refusals;          ///< error codes that the next writes return
    std::size_t refuseFrom = 0;         ///< the refusals begin after this many frames
    std::vector<std::size_t> startedAt; ///< for each start: number of frames written before it
    std::vector<std::size_t> offered;   ///< number of frames passed to each write, accepted or not
    std::function<void()> onStop;       ///< called when the device is stopped
    bool hangs = false;                 ///< writes do not return
    bool full = false;                  ///< the device accepts no frames
    std::atomic<int> opened = 0;
    std::atomic<int> closed = 0;
    std::atomic<int> prepared = 0;
    std::atomic<int> stopped = 0;
    std::atomic<bool> hanging = false; ///< the latest write was blocked when it began

    std::size_t playedFrames() {
        const std::lock_guard lock(mutex);
        return played.size();
    }
    std::vector<StereoFrame> firstPlayed(std::size_t count) {
        const std::lock_guard lock(mutex);
        return {played.begin(),
                played.begin() + static_cast<std::ptrdiff_t>(std::min(count, played.size()))};
    }
    void release() {
        const std::lock_guard lock(mutex);
        hangs = false;
        changed.notify_all();
    }
};

class FakePlayback : public PcmPlayback {
  public:
    explicit FakePlayback(std::shared_ptr<PlaybackDevice> device) : device_(std::move(device)) {
        ++device_->opened;
    }
    ~FakePlayback() override { ++device_->closed; }

    long write(std::span<const StereoFrame> frames) override {
        std::unique_lock lock(device_->mutex);
        device_->hanging = device_->hangs;
        device_->changed.wait(lock, [this] { return !device_->hangs; });
        device_->offered.push_back(frames.size());
        if (device_->full) {
            return -EAGAIN;
        }
        if (device_->played.size() >= device_->refuseFrom && !device_->refusals.empty()) {
            const long answer = device_->refusals.front();
            device_->refusals.pop_front();
            return answer;
        }
        // Like a real device, may accept only a part of the frames.
        const std::size_t count = std::min<std::size_t>(frames.size(), 300);
        device_->played.insert(device_->played.end(), frames.begin(),
                               frames.begin() + static_cast<std::ptrdiff_t>(count));
        return static_cast<long>(count);
    }
    int waitForRoom(std::chrono::milliseconds) override { return 0; }
    int prepare() override {
        ++device_->prepared;
        return 0;
    }
    int start() override {
        const std::lock_guard lock(device_->mutex);
        device_->startedAt.push_back(device_->played.size());
        return 0;
    }
    void stop() override {
        ++device_->stopped;
        if (device_->onStop) {
            device_->onStop();
        }
    }
    long queued() override { return 0; }

  private:
    std::shared_ptr<PlaybackDevice> device_;
};

class PlaybackPumpTest : public testing::Test {
  protected:
    /// Passes pattern(first, count) to the pump, in blocks as the card does.
    static void play(PlaybackPump& pump, std::int64_t first, std::size_t count) {
        const std::vector<StereoFrame> frames = fakes::pattern(first, count);
        for (std::size_t done = 0; done < count; done += blockFrames) {
            pump.play(std::span(frames).subspan(done, std::min(blockFrames, count - done)));
        }
    }
    OpenPlayback opener() {
        return [device = device] {
            return std::make_unique<FakePlayback>(device);
        };
    }

    std::shared_ptr<PlaybackDevice> device = std::make_shared<PlaybackDevice>();
    PlaybackTiming patient{.closeAfter = std::chrono::hours(1),
                           .retryAfter = std::chrono::hours(1),
                           .stallLimit = std::chrono::hours(1),
                           .patience = std::chrono::seconds(30)};
    /// With these times a sound is never treated as ended, however late the test's thread adds its
    /// next block.
    PlaybackTiming endless{.dryAfter = std::chrono::hours(1),
                           .closeAfter = std::chrono::hours(1),
                           .retryAfter = std::chrono::hours(1),
                           .stallLimit = std::chrono::hours(1),
                           .patience = std::chrono::seconds(30)};
};

} // namespace sonarith::sound
