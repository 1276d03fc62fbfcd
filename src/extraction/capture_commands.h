// SPDX-License-Identifier: GPL-3.0-or-later
// The texts of the device commands that several extraction jobs send, and the capture formats. When
// they are sent is the business of the jobs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/media_control.h"

namespace sonarith {

/// Linear samples as the recorder takes them. All zero: no format at all, which the device refuses.
struct CaptureFormat {
    int samplesPerSecond = 0;
    int bitsPerSample = 0;
    int channels = 0;

    /// Bytes of one sample of all channels.
    [[nodiscard]] int alignment() const { return channels * bitsPerSample / 8; }
    [[nodiscard]] int bytesPerSecond() const { return samplesPerSecond * alignment(); }
    bool operator==(const CaptureFormat&) const = default;
};

/// 0: mono, 1: stereo, both of 16 bits at 44100 Hz; anything else: no format.
[[nodiscard]] CaptureFormat captureFormat(std::int16_t audioFormat);

/// The format of an entry of the preferences' format list, compared as a whole text.
[[nodiscard]] CaptureFormat captureFormatNamed(std::string_view entry);

/// The command that sets `format` on the open recorder.
[[nodiscard]] std::string setFormatCommand(const CaptureFormat& format);

/// Sends `command` and gives the reply up to its first NUL; empty for a command that failed.
[[nodiscard]] std::string ask(MediaControl& media, const std::string& command, ReplyBuffer& reply);

/// Stops both devices, saves the recording under `path` and closes them. No status is looked at: on
/// a capture that has been ended already the commands fail harmlessly.
void saveAndClose(MediaControl& media, const std::string& path);

} // namespace sonarith
