// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/capture_commands.h"

#include "platform/text/cut_at_null.h"

namespace sonarith {

namespace {
constexpr CaptureFormat mono = {44100, 16, 1};
constexpr CaptureFormat stereo = {44100, 16, 2};
} // namespace

CaptureFormat captureFormat(std::int16_t audioFormat) {
    switch (audioFormat) {
    case 0:
        return mono;
    case 1:
        return stereo;
    default:
        return {};
    }
}

CaptureFormat captureFormatNamed(std::string_view entry) {
    if (entry == "44.100Hz, 16bit Mono, 86k/sec") {
        return mono;
    }
    if (entry == "44.100Hz, 16bit Stereo, 172k/sec") {
        return stereo;
    }
    return {};
}

std::string setFormatCommand(const CaptureFormat& format) {
    return "set capture samplespersec " + std::to_string(format.samplesPerSecond) + " channels " +
           std::to_string(format.channels) + " bitspersample " +
           std::to_string(format.bitsPerSample) + " alignment " +
           std::to_string(format.alignment()) + " bytespersec " +
           std::to_string(format.bytesPerSecond());
}

std::string ask(MediaControl& media, const std::string& command, ReplyBuffer& reply) {
    media.sendString(command, &reply);
    return CutAtNull(reply.bytes());
}

void saveAndClose(MediaControl& media, const std::string& path) {
    media.sendString("stop capture");
    media.sendString("stop cd");
    // The path is not quoted: it is the complete rest of the command and may contain blanks.
    media.sendString("save capture " + path);
    media.sendString("close capture");
    media.sendString("close cd");
}

} // namespace sonarith
