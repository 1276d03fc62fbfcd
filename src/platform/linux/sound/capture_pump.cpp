// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/capture_pump.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/linux/sound/frame_queue.h"
#include "platform/linux/sound/sound_card.h"

namespace sonarith::sound {

namespace {

/// What waits for the card at the most: 500 ms. Beyond that the oldest frames go.
constexpr std::size_t backlogFrames = frameRate / 2;
/// The line is silent until 60 ms wait, so that a device that delivers in larger lumps than the
/// card takes leaves no gaps.
constexpr std::size_t cushionFrames = frameRate * 60 / 1000;
/// How long one wait for frames lasts, and with it how soon the pump sees that it is to leave.
constexpr std::chrono::milliseconds frameWait{100};
/// After a device said that it had frames and then had none.
constexpr std::chrono::milliseconds emptyReadRest{10};
/// Restarts in a row without one frame in between, until the device counts as lost.
constexpr int maxFruitlessRestarts = 3;

} // namespace

/// What the card's side and the pump's thread share.
struct CaptureBacklog {
    std::mutex mutex;
    std::condition_variable changed;
    FrameQueue queue{backlogFrames};
    bool flowing = false; ///< the cushion was reached and has not run out since
    bool leaving = false;

    bool isLeaving() {
        const std::lock_guard lock(mutex);
        return leaving;
    }
    void rest(std::chrono::milliseconds time) {
        std::unique_lock lock(mutex);
        changed.wait_for(lock, time, [this] { return leaving; });
    }
    void add(std::span<const StereoFrame> frames) {
        const std::lock_guard lock(mutex);
        if (queue.size() + frames.size() > backlogFrames) {
            queue.drop(queue.size() + frames.size() - backlogFrames);
        }
        queue.push(frames);
    }
};

namespace {

/// Reads from one open device until it is lost or it is time to leave.
void listen(PcmCapture& device, CaptureBacklog& backlog) {
    std::vector<StereoFrame> block(blockFrames);
    int restarts = 0;
    if (device.restart() < 0) {
        return;
    }
    while (!backlog.isLeaving()) {
        long result = device.read(block);
        if (result > 0) {
            restarts = 0;
            const auto count = std::min(static_cast<std::size_t>(result), block.size());
            backlog.add(std::span(block).first(count));
            continue;
        }
        if (result == 0 || result == -EAGAIN) {
            result = device.waitForFrames(frameWait);
            if (result > 0) {
                // Devices that answer too early, and then have nothing, must not make it spin. The
                // rest is shorter than what any device keeps.
                backlog.rest(emptyReadRest);
            }
        }
        if (result == -EPIPE || result == -ESTRPIPE) {
            if (++restarts > maxFruitlessRestarts || device.restart() < 0) {
                return;
            }
        } else if (result < 0 && result != -EINTR) {
            return;
        }
    }
}

void pump(CaptureBacklog& backlog, const OpenCapture& open, const CaptureTiming& timing) {
    while (!backlog.isLeaving()) {
        if (const std::unique_ptr<PcmCapture> device = open()) {
            listen(*device, backlog);
        }
        backlog.rest(timing.retryAfter);
    }
}

} // namespace

CapturePump::CapturePump(OpenCapture open, CaptureTiming timing)
    : backlog_(std::make_shared<CaptureBacklog>()),
      timing_(timing),
      thread_(
          [backlog = backlog_, open = std::move(open), timing] { pump(*backlog, open, timing); }) {}

CapturePump::~CapturePump() {
    {
        const std::lock_guard lock(backlog_->mutex);
        backlog_->leaving = true;
    }
    backlog_->changed.notify_all();
    thread_.leave(timing_.patience);
}

Pulled CapturePump::pull(std::span<StereoFrame> block) {
    const std::lock_guard lock(backlog_->mutex);
    backlog_->flowing = backlog_->flowing || backlog_->queue.size() >= cushionFrames;
    std::size_t count = 0;
    if (backlog_->flowing) {
        count = backlog_->queue.pop(block);
        backlog_->flowing = count == block.size();
    }
    std::fill(block.begin() + static_cast<std::ptrdiff_t>(count), block.end(), StereoFrame{});
    return {block.size(), Supply::flowing};
}

} // namespace sonarith::sound
