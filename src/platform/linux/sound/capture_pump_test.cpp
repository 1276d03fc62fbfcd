// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/capture_pump.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <deque>
#include <mutex>

#include "support/fake_sound.h"
#include "support/sound_matchers.h"
#include "support/waiting.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::eventually;
using fakes::IsSound;
using fakes::pattern;
using fakes::silence;

using Frames = std::vector<StereoFrame>;

/// A device whose state outlives it, so that a test can look at it.
struct CaptureDevice {
    std::mutex mutex;
    std::condition_variable changed;
    std::int64_t position = 0;
    std::int64_t available = 0;
    std::deque<long> refusals; ///< answers of the next reads
    bool drained = false;      ///< a read found nothing more
    bool hangs = false;
    std::atomic<int> opened = 0;
    std::atomic<int> closed = 0;
    std::atomic<int> restarts = 0;

    void provide(std::int64_t frames) {
        const std::lock_guard lock(mutex);
        available += frames;
        drained = false;
    }
    /// Whether all that was provided has passed through the pump.
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
        std::this_thread::sleep_for(1ms);
        return 0;
    }
    int restart() override {
        ++device_->restarts;
        return 0;
    }

  private:
    std::shared_ptr<CaptureDevice> device_;
};

class CapturePumpTest : public testing::Test {
  protected:
    OpenCapture opener() {
        return [device = device] {
            return std::make_unique<FakeCapture>(device);
        };
    }
    /// Pulls a block; the source must always fill it.
    static Frames pull(CapturePump& pump, std::size_t count) {
        Frames block(count, StereoFrame{99, 99});
        const Pulled pulled = pump.pull(block);
        EXPECT_EQ(pulled.frames, count);
        EXPECT_EQ(pulled.supply, Supply::flowing);
        return block;
    }
    /// Pulls until something else than silence comes.
    static Frames pullSound(CapturePump& pump, std::size_t count) {
        Frames block;
        EXPECT_TRUE(eventually([&] {
            block = pull(pump, count);
            return block != silence(count);
        }));
        return block;
    }

    std::shared_ptr<CaptureDevice> device = std::make_shared<CaptureDevice>();
    CaptureTiming timing{.retryAfter = 1ms, .patience = 30s};
};

TEST_F(CapturePumpTest, IsSilentWhereTheDeviceHasNothing) {
    CapturePump pump(opener(), timing);
    EXPECT_THAT(pull(pump, 441), IsSound(silence(441)));
}

TEST_F(CapturePumpTest, IsSilentWhereThereIsNoDevice) {
    CapturePump pump([] { return nullptr; }, timing);
    EXPECT_THAT(pull(pump, 441), IsSound(silence(441)));
}

TEST_F(CapturePumpTest, DeliversWhatTheDeviceHearsWithoutAGap) {
    device->provide(20'000);
    CapturePump pump(opener(), timing);
    ASSERT_TRUE(eventually([&] { return device->isDrained(); }));
    Frames all = pullSound(pump, 441);
    while (all.size() < 40 * 441) {
        const Frames block = pull(pump, 441);
        all.insert(all.end(), block.begin(), block.end());
    }
    EXPECT_THAT(all, IsSound(pattern(0, 40 * 441)));
}

TEST_F(CapturePumpTest, WaitsForACushionAfterItRanOut) {
    device->provide(441 * 7);
    CapturePump pump(opener(), timing);
    ASSERT_TRUE(eventually([&] { return device->isDrained(); }));
    pullSound(pump, 441 * 5);
    pull(pump, 441 * 3); // the last two blocks, and a gap
    device->provide(441);
    ASSERT_TRUE(eventually([&] { return device->isDrained(); }));
    EXPECT_THAT(pull(pump, 441), IsSound(silence(441)));
    device->provide(441 * 8);
    EXPECT_THAT(pullSound(pump, 441), IsSound(pattern(441 * 7, 441)));
}

TEST_F(CapturePumpTest, StartsADeviceAgainThatWasOverrun) {
    device->refusals = {-EPIPE, -ESTRPIPE};
    device->provide(10'000);
    CapturePump pump(opener(), timing);
    EXPECT_THAT(pullSound(pump, 441), IsSound(pattern(0, 441)));
    EXPECT_EQ(device->restarts, 3);
    EXPECT_EQ(device->opened, 1);
}

TEST_F(CapturePumpTest, OpensALostDeviceAgain) {
    device->refusals = {-ENODEV};
    device->provide(10'000);
    CapturePump pump(opener(), timing);
    EXPECT_THAT(pullSound(pump, 441), IsSound(pattern(0, 441)));
    EXPECT_EQ(device->opened, 2);
    EXPECT_EQ(device->closed, 1);
}

TEST_F(CapturePumpTest, DropsTheOldestWhereNobodyPulls) {
    device->provide(3 * frameRate);
    CapturePump pump(opener(), timing);
    ASSERT_TRUE(eventually([&] { return device->isDrained(); }));
    const Frames block = pullSound(pump, 441);
    EXPECT_THAT(block, IsSound(pattern(3 * frameRate - frameRate / 2, 441)));
}

TEST_F(CapturePumpTest, DoesNotDelayItsEndForADeviceThatHangs) {
    device->hangs = true;
    timing.patience = 1ms;
    {
        CapturePump pump(opener(), timing);
        EXPECT_THAT(pull(pump, 441), IsSound(silence(441)));
    }
    {
        const std::lock_guard lock(device->mutex);
        device->hangs = false;
        device->changed.notify_all();
    }
    EXPECT_TRUE(eventually([&] { return device->closed == device->opened; }));
}

} // namespace
} // namespace sonarith::sound
