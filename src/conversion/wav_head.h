// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the format fields of a WAV file, at fixed places of its first 36 bytes, and works out how
// long it plays. It searches for no chunk, and nothing in the program calls it.
#pragma once

#include <cstdint>
#include <string>

#include "platform/file_system.h"

namespace sonarith {

/// What the last files left: a field that a file does not come to store is that of a file before.
struct WavHead {
    std::string wavFileLength; ///< bytes, in decimal
    std::int16_t wavChannels = 0;
    std::int16_t wavBits = 0;
    std::string wavSampleRate;   ///< Hz, one of six texts
    std::int32_t wavBitRate = 0; ///< bits per second
    std::string wavDuration;     ///< minutes, a colon, seconds
};

class WavHeadReader {
  public:
    /// `files` outlives this.
    explicit WavHeadReader(FileSystem& files) : files_(files) {}

    /// Whether the file begins with "RIFF". Length, channels and bits are stored whether it does or
    /// not, the others if it does. What cannot be read is passed over. A file that does not exist
    /// is made, empty.
    bool wHeadInfo(const std::string& path);

    [[nodiscard]] const WavHead& head() const { return head_; }

  private:
    void workOut();

    FileSystem& files_;
    WavHead head_;
};

} // namespace sonarith
