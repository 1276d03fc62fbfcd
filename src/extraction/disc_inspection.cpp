// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/disc_inspection.h"

#include <algorithm>

#include "extraction/capture_commands.h"
#include "extraction/track_line.h"
#include "platform/text/numbers.h"

namespace sonarith {

namespace {

constexpr std::size_t replySize = 64;
/// Limits the memory used for an invalid reply; a disc has at most 99 tracks.
constexpr double mostTracks = 9999;

std::string lengthQuestion(std::int32_t track) {
    return "status cd length track " + std::to_string(track);
}

} // namespace

void DiscInspection::InspectCD() {
    clearDisc();
    // An earlier inspection may have left the disc open.
    platform_.media.sendString("stop cd");
    platform_.media.sendString("close cd");
    if (platform_.media.sendString("open cdaudio alias cd") != mciSuccess) {
        return;
    }
    // All replies use one buffer. It need not be cleared, because ask() reads only up to the NUL.
    ReplyBuffer reply(replySize);
    form_.lblCDID.setCaption(ask(platform_.media, "info cd identity", reply));
    // Deliberate: neither the new seed nor the random number has an effect, because
    // TrackCapture::nameFile() seeds again before it draws a number.
    platform_.random.reseedFromClock();
    static_cast<void>(platform_.random.fraction());
    form_.lblNumTracks.setCaption(ask(platform_.media, "status cd number of tracks", reply));
    platform_.loop.yield();
    const double trackCount = numberOf(form_.lblNumTracks.caption());
    if (trackCount < 2) {
        // The disc stays open in this case; the next inspection closes it.
        showUnusable(trackCount);
        return;
    }
    readTracks(std::min(trackCount, mostTracks), reply);
    platform_.media.sendString("close cd");
}

void DiscInspection::clearDisc() {
    form_.lblCDID.setCaption("");
    form_.lblNumTracks.setCaption("");
    form_.lstTracks.clear();
    form_.lstRecord.clear();
}

void DiscInspection::showUnusable(double trackCount) {
    platform_.loop.yield();
    // Deliberate: only the number of tracks is tested, so even a music disc is refused if it has
    // one track.
    if (trackCount == 1) {
        platform_.boxes.show(
            "The current CD is not a music CD. If you wish to use your CD as a source, "
            "please insert a music CD into the CD drive.");
    } else if (trackCount == 0) {
        platform_.boxes.show(
            "The CD drive is empty. If you wish to use your CD as a source, please insert "
            "a music CD into the CD drive.");
    }
}

void DiscInspection::readTracks(double trackCount, ReplyBuffer& reply) {
    // Each length is queried twice: as a text to show, and as a number for calculations.
    platform_.media.sendString("set cd time format hms");
    for (std::int32_t i = 1; i <= trackCount; ++i) {
        form_.lstTracks.addItem(trackLine(i, ask(platform_.media, lengthQuestion(i), reply)));
    }
    capture_.trackLengthMs.reallocate(static_cast<std::int32_t>(trackCount));
    platform_.media.sendString("set cd time format milliseconds");
    for (std::int32_t i = 1; i <= trackCount; ++i) {
        const auto length = toInteger32(ask(platform_.media, lengthQuestion(i), reply));
        if (length.ok()) {
            capture_.trackLengthMs.set(i, length.value()).passOver();
        }
    }
}

} // namespace sonarith
