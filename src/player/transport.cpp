// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/transport.h"

#include <cstdint>
#include <limits>

namespace sonarith {

Transport::Transport(ProcessState& process, Form4& form, CdCommands& commands, DiscPoll& poll,
                     DiscState& disc)
    : process_(process), form_(form), commands_(commands), poll_(poll), disc_(disc) {
    form_.play.onClick = [this] {
        play_Click();
    };
    form_.pause.onClick = [this] {
        pause_Click();
    };
    form_.stopbtn.onClick = [this] {
        stopbtn_Click();
    };
    form_.ftrack.onClick = [this] {
        ftrack_Click();
    };
    form_.btrack.onClick = [this] {
        btrack_Click();
    };
    form_.eject.onClick = [this] {
        eject_Click();
    };
}

void Transport::play_Click() {
    form_.eject.setEnabled(false);
    if (process_.CDPaused) {
        goOn();
        return;
    }
    if (process_.currentTrack > 0 &&
        process_.currentTrack <= std::numeric_limits<std::int16_t>::max()) {
        disc_.CurTrack = static_cast<std::int16_t>(process_.currentTrack);
    }
    if (disc_.CurTrack < 1) {
        disc_.CurTrack = 1;
    }
    if (disc_.CurTrack < disc_.NumTracks) {
        disc_.Playing = true;
        playFrom(disc_.CurTrack);
    }
    poll_.UpdatePlayer();
}

void Transport::goOn() {
    process_.CDPaused = false;
    commands_.SendMCI("play cd", CommandCheck::checked);
    disc_.Playing = true;
    form_.CD.setText("Playing");
}

void Transport::pause_Click() {
    form_.eject.setEnabled(false);
    commands_.SendMCI("pause cd", CommandCheck::checked);
    process_.CDPaused = true;
    disc_.Playing = false;
    poll_.UpdatePlayer();
}

void Transport::stopbtn_Click() {
    commands_.SendMCI("stop cd wait", CommandCheck::checked);
    seekTo(disc_.CurTrack);
    disc_.Playing = false;
    poll_.UpdatePlayer();
    form_.eject.setEnabled(true);
}

void Transport::ftrack_Click() {
    form_.eject.setEnabled(false);
    if (disc_.CurTrack < disc_.NumTracks) {
        skipTo(disc_.CurTrack + 1);
    } else {
        seekTo(1);
    }
    poll_.UpdatePlayer();
}

void Transport::btrack_Click() {
    form_.eject.setEnabled(false);
    int track = disc_.CurTrack;
    if (disc_.CurMin == 0 && disc_.CurSec == 0) {
        track = track > 1 ? track - 1 : disc_.NumTracks;
    }
    skipTo(track);
    poll_.UpdatePlayer();
}

void Transport::eject_Click() {
    form_.eject.setEnabled(false);
    commands_.SendMCI("set cd door open", CommandCheck::checked);
    poll_.UpdatePlayer();
}

void Transport::playFrom(int track) {
    commands_.SendMCI("play cd from " + std::to_string(track), CommandCheck::checked);
}

void Transport::seekTo(int track) {
    commands_.SendMCI("seek cd to " + std::to_string(track), CommandCheck::checked);
}

void Transport::skipTo(int track) {
    if (disc_.Playing) {
        playFrom(track);
    } else {
        seekTo(track);
    }
}

} // namespace sonarith
