// SPDX-License-Identifier: GPL-3.0-or-later
// Keeps the sound card's input running while the level meter is to show it. What is recorded is
// thrown away: the level comes from the mixer, not from these samples.
#pragma once

#include <array>
#include <cstddef>

#include "forms/form4.h"
#include "platform/platform.h"
#include "platform/wave_input.h"

namespace sonarith {

class MeterCapture {
  public:
    /// Becomes the handler of Check3. Both outlive this.
    MeterCapture(const Platform& platform, Form4& form);
    ~MeterCapture(); ///< stops an input that still runs: it would write to the buffers
    MeterCapture(const MeterCapture&) = delete;
    MeterCapture& operator=(const MeterCapture&) = delete;

    /// Opens device 0 and starts it; nothing if it runs already. Each failure but that of the start
    /// itself appears as a message in the platform's words, which yields. False only if the device
    /// could not be opened.
    bool StartMeter();
    /// Ends the input, failures ignored. May be called at any time.
    void StopMeter();
    /// Queues the filled buffers for the input again, unread. Allocates nothing.
    void requeueDoneBuffers();

    [[nodiscard]] bool running() const { return MeterRunning; }

  private:
    struct MeterBuffer {
        WaveHeader header;
        std::array<std::byte, 8192> data{};
    };

    /// Shows the message of a failure; nothing for a success.
    void report(WaveResult result);

    const Platform& platform_;
    Form4& form_;
    WaveInHandle hWaveIn = 0;
    bool MeterRunning = false;
    int stops_ = 0; ///< calls of StopMeter() so far
    /// They last as long as this, not just until the input is stopped: one that failed to release a
    /// buffer may still be writing to it.
    std::array<MeterBuffer, 2> MeterBuffers;
};

} // namespace sonarith
