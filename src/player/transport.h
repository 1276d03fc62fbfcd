// SPDX-License-Identifier: GPL-3.0-or-later
// Handles the transport buttons: play, pause, stop, skip and eject. power_switch.h handles the
// power switch, disc_poll.h the display.
#pragma once

#include <string>

#include "forms/form4.h"
#include "player/cd_commands.h"
#include "player/disc_poll.h"
#include "player/disc_state.h"
#include "settings/process_state.h"

namespace sonarith {

class Transport {
  public:
    /// Sets the handlers of the six buttons. All parameters must outlive this object.
    Transport(ProcessState& process, Form4& form, CdCommands& commands, DiscPoll& poll,
              DiscState& disc);
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;

    // Deliberate: if a command sent with CommandCheck::checked fails, SendMCI closes all devices,
    // unloads the panel and yields. The handler then continues, and its remaining commands fail.

    /// Continues after a pause. Otherwise plays the track ProcessState::currentTrack, or the track
    /// at the disc's position if currentTrack is 0. Deliberate: no play command is sent for the
    /// last track.
    void play_Click();
    void pause_Click();
    /// Stops and seeks to the current track's start. Enables "Eject".
    void stopbtn_Click();
    /// Skips to the next track; on the last track seeks to the first track without playing it.
    void ftrack_Click();
    /// Skips to the start of the current track. In the track's first second (shown time 00:00),
    /// skips to the previous track instead. The last track counts as the previous track of the
    /// first.
    void btrack_Click();
    void eject_Click();

  private:
    void goOn();
    void playFrom(int track);
    void seekTo(int track);
    /// Plays from the track's start if the disc plays, otherwise only seeks to that start.
    void skipTo(int track);

    ProcessState& process_;
    Form4& form_;
    CdCommands& commands_;
    DiscPoll& poll_;
    DiscState& disc_;
};

} // namespace sonarith
