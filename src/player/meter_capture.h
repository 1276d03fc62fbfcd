// SPDX-License-Identifier: GPL-3.0-or-later
// Keeps the sound card's input running while the level meter shows the input's level. The samples
// are discarded: the level is read from the mixer.
#pragma once

#include <array>
#include <cstddef>

#include "forms/form4.h"
#include "platform/platform.h"
#include "platform/wave_input.h"

namespace sonarith {

class MeterCapture {
  public:
    /// Sets the handler of Check3. Both parameters must outlive this object.
    MeterCapture(const Platform& platform, Form4& form);
    ~MeterCapture(); ///< stops a running input, which could otherwise write to destroyed buffers
    MeterCapture(const MeterCapture&) = delete;
    MeterCapture& operator=(const MeterCapture&) = delete;

    /// Opens input device 0 and starts the input; does nothing if the input is already running.
    /// A failure is shown in a message with the platform's text; while the message is shown, the
    /// call yields. A failure of the last step, WaveInput::start(), is ignored. Returns false only
    /// if the device could not be opened.
    bool StartMeter();
    /// Stops the input; failures are ignored. May be called at any time.
    void StopMeter();
    /// Queues the filled buffers for the input again, unread. Allocates nothing.
    void requeueDoneBuffers();

    [[nodiscard]] bool running() const { return MeterRunning; }

  private:
    struct MeterBuffer {
        WaveHeader header;
        std::array<std::byte, 8192> data{};
    };

    /// Shows a message for a failure; does nothing for a success.
    void report(WaveResult result);

    const Platform& platform_;
    Form4& form_;
    WaveInHandle hWaveIn = 0;
    bool MeterRunning = false;
    int stops_ = 0; ///< calls of StopMeter() so far
    /// The buffers exist as long as this object, not only until the input is stopped: an input that
    /// failed to release a buffer may still write to it.
    std::array<MeterBuffer, 2> MeterBuffers;
};

} // namespace sonarith
