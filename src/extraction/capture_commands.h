// SPDX-License-Identifier: GPL-3.0-or-later
// The texts of device commands that several extraction jobs send, and the capture formats. The jobs
// decide when to send them.
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

    /// Bytes of one sample of all channels.
    [[nodiscard]] int alignment() const { return channels * bitsPerSample / 8; }
    [[nodiscard]] int bytesPerSecond() const { return samplesPerSecond * alignment(); }
    bool operator==(const CaptureFormat&) const = default;
};

/// The format for 0 is mono, for 1 stereo, both with 16 bits at 44100 Hz. Other values have no
/// format.
[[nodiscard]] CaptureFormat captureFormat(std::int16_t audioFormat);

/// The format of an entry of the preferences' format list; the whole text is compared.
[[nodiscard]] CaptureFormat captureFormatNamed(std::string_view entry);

/// The command that sets `format` on the open recorder.
[[nodiscard]] std::string setFormatCommand(const CaptureFormat& format);

/// Sends `command` and returns the reply up to its first NUL; empty if the command failed.
[[nodiscard]] std::string ask(MediaControl& media, const std::string& command, ReplyBuffer& reply);

/// Stops both devices, saves the recording under `path` and closes them. Ignores all results: if
/// the capture has already ended, the commands fail without effect.
void saveAndClose(MediaControl& media, const std::string& path);

} // namespace sonarith
