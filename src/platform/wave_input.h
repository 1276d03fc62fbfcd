// SPDX-License-Identifier: GPL-3.0-or-later
// The interface through which the logic uses wave input: a device that fills buffers with samples.
// Interface only.
//
// Life cycle: open the device; prepare and add each buffer; start. At the end, unprepare each
// buffer, then close the device.
//
// While the device runs, it fills the buffers in the order in which they were added, and marks them
// done. A done buffer may be added again. stop() ends the run and marks a partly filled buffer
// done; the empty buffers stay queued. reset() ends the run, marks all queued buffers done and
// empties the queue. A call that does not fit the state returns an error and changes nothing.
//
// All members are called on the logic thread. open() may wait for the device for 40 ms at most;
// stop(), reset() and close() for 150 ms at most. The other members return at once. The device
// writes to added buffers and to their flags on its own thread.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

namespace sonarith {

/// Result of an operation; 0 is success. The numbers, flags and field names in this file are those
/// of the wave-input interface that the class WaveInput reproduces.
enum class WaveResult : int {
    noError = 0,
    badDevice = 2,     ///< no such input
    notEnabled = 3,    ///< the input exists but cannot be opened
    allocated = 4,     ///< already open
    invalidHandle = 5, ///< not open
    invalidParameter = 11,
    badFormat = 32,
    stillPlaying = 33, ///< buffers are still in the device's queue
    unprepared = 34,
};

/// 0 means none.
using WaveInHandle = std::uint32_t;

/// The format of the samples.
struct WaveFormat {
    std::uint16_t wFormatTag = 0; ///< 1: PCM
    std::uint16_t nChannels = 0;
    std::uint32_t nSamplesPerSec = 0;
    std::uint32_t nAvgBytesPerSec = 0;
    std::uint16_t nBlockAlign = 0;
    std::uint16_t wBitsPerSample = 0;
    std::uint16_t cbSize = 0;
};

/// Bits of WaveHeader::dwFlags.
namespace wave_header {
inline constexpr std::uint32_t done = 1;
inline constexpr std::uint32_t prepared = 2;
inline constexpr std::uint32_t inQueue = 16;
} // namespace wave_header

/// A buffer. From addBuffer() until the flag `done` is set, it must not be moved or destroyed.
struct WaveHeader {
    std::byte* lpData = nullptr;
    std::uint32_t dwBufferLength = 0;
    std::uint32_t dwBytesRecorded = 0;
    std::atomic<std::uint32_t> dwFlags = 0;
    std::uint32_t dwLoops = 0;
};

class WaveInput {
  public:
    virtual ~WaveInput() = default;
    /// Opens the device with the number `device`, counted from 0. Errors: badDevice, notEnabled,
    /// allocated, badFormat; they leave `handle` unchanged.
    virtual WaveResult open(WaveInHandle& handle, std::uint32_t device,
                            const WaveFormat& format) = 0;
    virtual WaveResult prepareHeader(WaveInHandle handle, WaveHeader& header) = 0;
    virtual WaveResult unprepareHeader(WaveInHandle handle, WaveHeader& header) = 0;
    virtual WaveResult addBuffer(WaveInHandle handle, WaveHeader& header) = 0;
    virtual WaveResult start(WaveInHandle handle) = 0;
    virtual WaveResult stop(WaveInHandle handle) = 0;
    virtual WaveResult reset(WaveInHandle handle) = 0;
    virtual WaveResult close(WaveInHandle handle) = 0;
    /// The platform's message for an error; empty for success. The message for notEnabled contains
    /// the name of the device that cannot be opened.
    [[nodiscard]] virtual std::string errorText(WaveResult result) const = 0;
};

} // namespace sonarith
