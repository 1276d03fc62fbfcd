// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the format fields of a WAV file at fixed offsets in its first 36 bytes, and calculates its
// duration. Does not search for chunks. Nothing in the program calls wHeadInfo().
#pragma once

#include <cstdint>
#include <string>

#include "platform/file_system.h"

namespace sonarith {

/// The results of wHeadInfo(): a field that is not set for a file keeps the value of an earlier
/// file.
struct WavHead {
    std::string wavFileLength; ///< bytes, in decimal
    std::int16_t wavChannels = 0;
    std::int16_t wavBits = 0;
    std::string wavSampleRate;   ///< Hz, in decimal: one of the six rates in wav_head.cpp
    std::int32_t wavBitRate = 0; ///< bits per second
    std::string wavDuration;     ///< minutes, a colon, seconds
};

class WavHeadReader {
  public:
    /// `files` must outlive this object.
    explicit WavHeadReader(FileSystem& files) : files_(files) {}

    /// Returns whether the file begins with "RIFF". Length, channels and bits are stored for every
    /// file, the other fields only for a file that begins with "RIFF". A field that cannot be read
    /// keeps its value, except the sample rate. Only the rate's low byte is read; if this byte is
    /// missing, the rate becomes 32000 Hz. If the file does not exist, an empty file is created.
    bool wHeadInfo(const std::string& path);

    [[nodiscard]] const WavHead& head() const { return head_; }

  private:
    void workOut();

    FileSystem& files_;
    WavHead head_;
};

} // namespace sonarith
