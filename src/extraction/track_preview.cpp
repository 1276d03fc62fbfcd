// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/track_preview.h"

#include <string>

#include "platform/text/numbers.h"

namespace sonarith {

TrackPreview::TrackPreview(const Platform& platform, ProcessState& process, Form1& form,
                           const CaptureState& capture)
    : platform_(platform), process_(process), form_(form), capture_(capture) {
    form_.Command11.onClick = [this] {
        Command11_Click();
    };
    form_.Command12.onClick = [this] {
        Command12_Click();
    };
}

void TrackPreview::Command11_Click() {
    const std::int16_t trackCount = toInteger16(form_.lblNumTracks.caption()).valueOr(0);
    const std::int32_t start =
        startOfTrackMs(capture_.trackLengthMs, process_.currentTrack, trackCount);
    platform_.media.sendString("open cdaudio alias cd");
    platform_.media.sendString("set cd time format milliseconds");
    // The command contains the position even if the position is 0. A capture sends only "play cd"
    // for position 0.
    platform_.media.sendString("play cd from " + std::to_string(start));
}

void TrackPreview::Command12_Click() {
    platform_.media.sendString("stop capture");
    platform_.media.sendString("stop cd");
    platform_.media.sendString("close capture");
    platform_.media.sendString("close cd");
}

} // namespace sonarith
