// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/disc_poll.h"

#include <cstddef>
#include <string>

#include "player/disc_replies.h"

namespace sonarith {

namespace {
/// In points; large enough to read the position from a distance.
constexpr int positionFontSize = 18;
} // namespace

void enableDiscButtons(Form4& form, bool enabled) {
    for (CommandButton* button :
         {&form.play, &form.pause, &form.ftrack, &form.btrack, &form.stopbtn}) {
        button->setEnabled(enabled);
    }
}

DiscPoll::DiscPoll(Form4& form, CdCommands& commands, DiscState& disc)
    : form_(form), commands_(commands), disc_(disc) {
    for (Timer* timer : {&form_.Timer6, &form_.Timer1}) {
        timer->onTimer = [this] {
            UpdatePlayer();
        };
    }
}

void DiscPoll::UpdatePlayer() {
    if (!isTrueText(commands_.ask("status cd media present"))) {
        if (disc_.CDLoaded) {
            discRemoved();
        }
        return;
    }
    if (!disc_.CDLoaded && readDisc() == Found::otherDisc) {
        return;
    }
    showPosition();
    disc_.Playing = commands_.ask("status cd mode").starts_with("playing");
}

void DiscPoll::discRemoved() {
    enableDiscButtons(form_, false);
    disc_.CDLoaded = false;
    disc_.Playing = false;
    form_.tracktime.setCaption("");
    // timeWindow keeps the last position.
    form_.CD.setText("No CD");
}

DiscPoll::Found DiscPoll::readDisc() {
    readTrackCount(commands_.ask("status cd number of tracks wait"), disc_);
    form_.CD.setText("Cd Ready");
    if (disc_.NumTracks == 1) {
        // A disc of one track counts as a data disc, whatever the track contains. CDLoaded stays
        // false, so that each poll reads the disc again.
        form_.CD.setText("Not audio");
        return Found::otherDisc;
    }
    static_cast<void>(commands_.ask("status cd length wait"));
    if (disc_.NumTracks > 0) {
        disc_.TrackLengths.assign(static_cast<std::size_t>(disc_.NumTracks), {});
    }
    for (int track = 1; track <= disc_.NumTracks; ++track) {
        disc_.TrackLengths[static_cast<std::size_t>(track - 1)] =
            commands_.ask("status cd length track " + std::to_string(track));
    }
    form_.timeWindow.setFontSize(positionFontSize);
    enableDiscButtons(form_, true);
    disc_.CDLoaded = true;
    commands_.SendMCI("seek cd to 1", CommandCheck::checked);
    return Found::audioDisc;
}

void DiscPoll::showPosition() {
    readPosition(commands_.ask("status cd position"), disc_);
    form_.timeWindow.setText(positionText(disc_));
    if (disc_.CurTrack >= 1 &&
        static_cast<std::size_t>(disc_.CurTrack) <= disc_.TrackLengths.size()) {
        form_.tracktime.setCaption(
            "Track time: " + disc_.TrackLengths[static_cast<std::size_t>(disc_.CurTrack) - 1]);
    }
}

} // namespace sonarith
