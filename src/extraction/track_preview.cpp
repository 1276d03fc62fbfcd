// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/track_preview.h"

#include <string>

#include "platform/text/numbers.h"

namespace sonarith {

void TrackPreview::Command11_Click() {
    auto& [loop, media, process, form, capture] = context_;
    const std::int16_t trackCount = toInteger16(form.lblNumTracks.caption()).valueOr(0);
    const std::int32_t start =
        startOfTrackMs(capture.trackLengthMs, process.currentTrack, trackCount);
    media.sendString("open cdaudio alias cd");
    media.sendString("set cd time format milliseconds");
    // 0 is sent as a number too, unlike in a capture.
    media.sendString("play cd from " + std::to_string(start));
}

void TrackPreview::Command12_Click() {
    MediaControl& media = context_.media;
    media.sendString("stop capture");
    media.sendString("stop cd");
    media.sendString("close capture");
    media.sendString("close cd");
}

} // namespace sonarith
