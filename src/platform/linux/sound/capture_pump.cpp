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

/// At most this many frames (500 ms) are queued for the software sound card. If there are more, the
/// oldest frames are dropped.
constexpr std::size_t backlogFrames = frameRate / 2;
/// The card gets silence until 60 ms are buffered. A device may deliver larger blocks than the card
/// takes, but at longer intervals. Without this reserve the queue could be empty before the
/// device's next block arrives, and the sound would have gaps.
constexpr std::size_t cushionFrames = frameRate * 60 / 1000;
/// The longest single wait for frames, and so the longest time until the thread notices that it
/// must end.
constexpr std::chrono::milliseconds frameWait{20};
/// The delay between a wait that reports frames and the next read. Some waits report frames
/// although there are none: without the delay the thread would loop without a pause.
constexpr std::chrono::milliseconds emptyReadRest{10};
/// If a device stops again after this many restarts without a frame, it is closed and opened again.
constexpr int maxFruitlessRestarts = 3;

} // namespace

/// State shared by the card's side and the pump's thread.
struct CaptureBacklog {
    std::mutex mutex;
    std::condition_variable changed;
    FrameQueue queue{backlogFrames};
    bool flowing = false; ///< the cushion was filled, and each block since then was full
    CapturePump::Opening opening = CapturePump::Opening::pending;
    bool leaving = false;

    void setOpening(CapturePump::Opening value) {
        {
            const std::lock_guard lock(mutex);
            opening = value;
        }
        changed.notify_all();
    }
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

/// Reads from one open device until the device fails or the pump is asked to end.
void listen(PcmCapture& device, CaptureBacklog& backlog, const ReportDevice& report) {
    std::vector<StereoFrame> block(blockFrames);
    int restarts = 0;
    bool works = false;
    while (!backlog.isLeaving()) {
        long result = device.read(block);
        if (result > 0) {
            restarts = 0;
            const auto count = std::min(static_cast<std::size_t>(result), block.size());
            backlog.add(std::span(block).first(count));
            if (!std::exchange(works, true)) {
                report(DeviceState::works);
            }
            continue;
        }
        if (result == 0 || result == -EAGAIN) {
            result = device.waitForFrames(frameWait);
            if (result > 0) {
                // The delay is shorter than the time in which any device's buffer becomes full, so
                // that no frame is lost.
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

void pump(CaptureBacklog& backlog, const OpenCapture& open, const CaptureTiming& timing,
          const ReportDevice& report) {
    int failures = 0;
    while (!backlog.isLeaving()) {
        if (const std::unique_ptr<PcmCapture> device = open(); device && device->restart() >= 0) {
            backlog.setOpening(CapturePump::Opening::open);
            failures = 1; // the device was open, so the next failure to open it is reported
            listen(*device, backlog, report);
        } else {
            backlog.setOpening(CapturePump::Opening::failed);
            if (++failures >= 2 && !backlog.isLeaving()) {
                report(DeviceState::lost);
            }
        }
        backlog.rest(timing.retryAfter);
    }
}

} // namespace

CapturePump::CapturePump(OpenCapture open, CaptureTiming timing, ReportDevice report,
                         const ThreadStarter& starter)
    : backlog_(std::make_shared<CaptureBacklog>()),
      timing_(timing),
      report_(report ? std::move(report) : [](DeviceState) {}) {
    const Status started =
        thread_.start([backlog = backlog_, open = std::move(open), timing,
                       reportDevice = report_] { pump(*backlog, open, timing, reportDevice); },
                      starter);
    if (!started.ok()) {
        backlog_->setOpening(Opening::failed);
        report_(DeviceState::lost);
    }
}

CapturePump::~CapturePump() {
    {
        const std::lock_guard lock(backlog_->mutex);
        backlog_->leaving = true;
    }
    backlog_->changed.notify_all();
    thread_.leave(timing_.patience);
    report_(DeviceState::unused);
}

CapturePump::Opening CapturePump::opening(std::chrono::milliseconds atMost) {
    std::unique_lock lock(backlog_->mutex);
    backlog_->changed.wait_for(lock, atMost,
                               [this] { return backlog_->opening != Opening::pending; });
    return backlog_->opening;
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
