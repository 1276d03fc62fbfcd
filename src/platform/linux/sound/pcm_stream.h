// SPDX-License-Identifier: GPL-3.0-or-later
// What the pumps ask of an open sound device: stereo frames at the card's rate, in or out, and
// never a blocking read or write. Errors are negative errno values, as ALSA has them: -EAGAIN (no
// room, or no frames), -EPIPE (underrun, overrun), -ESTRPIPE (suspended); any other is final.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <span>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

/// Life cycle: opened and prepared; frames are written ahead; start; frames are written; stop;
/// prepare; and so on. The destructor closes. Used by one thread.
class PcmPlayback {
  public:
    virtual ~PcmPlayback() = default;
    /// Answers how many frames were taken, or a negative errno.
    [[nodiscard]] virtual long write(std::span<const StereoFrame> frames) = 0;
    /// Waits for room: positive if there is some, 0 if the time ran out, or a negative errno.
    [[nodiscard]] virtual int waitForRoom(std::chrono::milliseconds atMost) = 0;
    /// Makes the device ready to be written to from anew, after an underrun or a stop.
    [[nodiscard]] virtual int prepare() = 0;
    [[nodiscard]] virtual int start() = 0;
    /// Ends the sound at once. What is still queued is not heard.
    virtual void stop() = 0;
    /// Frames that were written and have not been heard yet, or a negative errno.
    [[nodiscard]] virtual long queued() = 0;
};

/// Opened, prepared and not started yet. The destructor closes. Used by one thread.
class PcmCapture {
  public:
    virtual ~PcmCapture() = default;
    /// Answers how many frames were read, or a negative errno.
    [[nodiscard]] virtual long read(std::span<StereoFrame> frames) = 0;
    /// Waits for frames: positive if there are some, 0 if the time ran out, or a negative errno.
    [[nodiscard]] virtual int waitForFrames(std::chrono::milliseconds atMost) = 0;
    /// Starts, or starts again after an overrun: a capture does not go on by itself.
    [[nodiscard]] virtual int restart() = 0;
};

/// Opens the device; empty if that fails. Called on the pump's thread, as it may take its time.
using OpenPlayback = std::function<std::unique_ptr<PcmPlayback>()>;
using OpenCapture = std::function<std::unique_ptr<PcmCapture>()>;

} // namespace sonarith::sound
