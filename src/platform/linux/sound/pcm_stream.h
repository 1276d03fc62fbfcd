// SPDX-License-Identifier: GPL-3.0-or-later
// The interface through which the pumps (playback_pump.h, capture_pump.h) use an open sound device,
// for output or input. The frames are stereo at frameRate; reads and writes do not block. Errors
// are negative errno values as in ALSA: -EAGAIN (no space, or no frames), -EPIPE (underrun,
// overrun), -ESTRPIPE (suspended), -EINTR (interrupted). After any other error the device is
// unusable.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <span>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

/// Life cycle: a new object's device is already open and prepared. The owner writes the first
/// frames, calls start(), and writes more. After stop(), prepare() begins the cycle again. The
/// destructor closes the device. For one thread only.
class PcmPlayback {
  public:
    virtual ~PcmPlayback() = default;
    /// Returns the number of frames written, or a negative errno.
    [[nodiscard]] virtual long write(std::span<const StereoFrame> frames) = 0;
    /// Waits for space: positive if there is some, 0 after a timeout, or a negative errno.
    [[nodiscard]] virtual int waitForRoom(std::chrono::milliseconds atMost) = 0;
    /// Prepares the device for new writes after an underrun, a suspension or a stop.
    [[nodiscard]] virtual int prepare() = 0;
    [[nodiscard]] virtual int start() = 0;
    /// Stops playback at once. Queued frames are discarded.
    virtual void stop() = 0;
    /// Returns the number of frames that were written and have not been played yet, or a negative
    /// errno.
    [[nodiscard]] virtual long queued() = 0;
};

/// A new object's device is open and prepared, but not started. The destructor closes the
/// device. For one thread only.
class PcmCapture {
  public:
    virtual ~PcmCapture() = default;
    /// Returns the number of frames read, or a negative errno.
    [[nodiscard]] virtual long read(std::span<StereoFrame> frames) = 0;
    /// Waits for frames: positive if there are some, 0 after a timeout, or a negative errno.
    [[nodiscard]] virtual int waitForFrames(std::chrono::milliseconds atMost) = 0;
    /// Starts the capture. Must be called again after an overrun or a suspension, since both end
    /// the capture.
    [[nodiscard]] virtual int restart() = 0;
};

/// Opens the device; returns null if that fails. Called on the pump's thread, because opening may
/// be slow.
using OpenPlayback = std::function<std::unique_ptr<PcmPlayback>()>;
using OpenCapture = std::function<std::unique_ptr<PcmCapture>()>;

} // namespace sonarith::sound
