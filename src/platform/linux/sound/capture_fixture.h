// SPDX-License-Identifier: GPL-3.0-or-later
// A capture device for tests, which delivers a fixed pattern. A test determines how many frames are
// available, and can make the device fail, hang or be missing.
#pragma once

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <span>
#include <thread>
#include <utility>

#include "platform/linux/sound/pcm_stream.h"
#include "support/fake_sound.h"

namespace sonarith::sound {

/// The state of a fake device. It outlives the FakeCapture object, so that a test can inspect the
/// state.
struct CaptureDevice {
    std::mutex mutex;
    std::condition_variable changed;
    std::int64_t position = 0;
    std::int64_t available = 0;
    std::deque<long> refusals; ///< error codes that the next reads return
    bool drained = false;      ///< a read has found no more data
    bool hangs = false;        ///< reads do not return
    bool openHangs = false;    ///< calls that open the device do not return
    std::atomic<bool> missing = false;
    std::atomic<int> refused = 0; ///< number of failed opens
    std::atomic<int> opened = 0;
    std::atomic<int> closed = 0;
    std::atomic<int> restarts = 0;

    /// Makes `frames` more frames of the pattern available to reads.
    void provide(std::int64_t frames) {
        const std::lock_guard lock(mutex);
        available += frames;
        drained = false;
    }
    /// Ends the hang: all calls that were blocked return.
    void release() {
        const std::lock_guard lock(mutex);
        hangs = false;
        openHangs = false;
        changed.notify_all();
    }
    /// Whether all frames that the test provided have been read, and a further read found no more.
    bool isDrained() {
        const std::lock_guard lock(mutex);
        return drained;
    }
};

class FakeCapture : public PcmCapture {
  public:
    explicit FakeCapture(std::shared_ptr<CaptureDevice> device) : device_(std::move(device)) {
        ++device_->opened;
    }
    ~FakeCapture() override { ++device_->closed; }

    long read(std::span<StereoFrame> frames) override {
        std::unique_lock lock(device_->mutex);
        device_->changed.wait(lock, [this] { return !device_->hangs; });
        if (!device_->refusals.empty()) {
            const long answer = device_->refusals.front();
            device_->refusals.pop_front();
            return answer;
        }
        const auto count = std::min(static_cast<std::int64_t>(frames.size()), device_->available);
        for (std::int64_t i = 0; i < count; ++i) {
            frames[static_cast<std::size_t>(i)] = fakes::patternFrame(device_->position++);
        }
        device_->available -= count;
        device_->drained = count == 0;
        return count > 0 ? static_cast<long>(count) : -EAGAIN;
    }
    int waitForFrames(std::chrono::milliseconds) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return 0;
    }
    int restart() override {
        ++device_->restarts;
        return 0;
    }

  private:
    std::shared_ptr<CaptureDevice> device_;
};

/// Returns a function that opens `device` for a pump. That function fails while the device is
/// missing.
inline OpenCapture openerOf(std::shared_ptr<CaptureDevice> device) {
    return [device = std::move(device)]() -> std::unique_ptr<PcmCapture> {
        {
            std::unique_lock lock(device->mutex);
            device->changed.wait(lock, [&] { return !device->openHangs; });
        }
        if (device->missing) {
            ++device->refused;
            return nullptr;
        }
        return std::make_unique<FakeCapture>(device);
    };
}

} // namespace sonarith::sound
