// SPDX-License-Identifier: GPL-3.0-or-later
// Defines the capture formats, and builds and sends device commands for the extraction. The callers
// decide when the commands are sent.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/media_control.h"

namespace sonarith {

/// A format of linear samples for the recorder. All zero means "no format", which the device
/// refuses.
struct CaptureFormat {
    int samplesPerSecond = 0;
    int bitsPerSample = 0;
    int channels = 0;

    /// Bytes of one frame, which is one sample for each channel.
    [[nodiscard]] int alignment() const { return channels * bitsPerSample / 8; }
    [[nodiscard]] int bytesPerSecond() const { return samplesPerSecond * alignment(); }
    bool operator==(const CaptureFormat&) const = default;
};

/// The format of the setting `audioFormat`: 0 is mono, 1 is stereo, each with 16 bits at 44100 Hz.
/// For any other value, all fields of the result are 0.
[[nodiscard]] CaptureFormat captureFormat(std::int16_t audioFormat);

/// The format of an entry of the preferences' format list; the whole text is compared. For any
/// other text, all fields of the result are 0.
[[nodiscard]] CaptureFormat captureFormatNamed(std::string_view entry);

/// The command that sets `format` on the open recorder.
[[nodiscard]] std::string setFormatCommand(const CaptureFormat& format);

/// Sends `command` and returns the reply up to its first NUL; empty if the command failed.
[[nodiscard]] std::string ask(MediaControl& media, const std::string& command, ReplyBuffer& reply);

/// Stops the recorder and the disc, saves the recording under `path` and closes both devices.
/// Ignores all results: if the capture has already ended, the commands fail without effect.
void saveAndClose(MediaControl& media, const std::string& path);

} // namespace sonarith
