// SPDX-License-Identifier: GPL-3.0-or-later
// The transport buttons: play, pause, stop, skip and eject. Power and display are elsewhere.
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
    /// Becomes the handler of the six buttons. All outlive this.
    Transport(ProcessState& process, Form4& form, CdCommands& commands, DiscPoll& poll,
              DiscState& disc);
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;

    // A checked command that fails unloads the panel, which yields; the handler goes on all the
    // same, with commands that fail.

    /// Goes on after a pause; else plays the main window's track or, without one, the current one.
    /// On the last track nothing is sent, on purpose.
    void play_Click();
    void pause_Click();
    /// Stops and moves to the current track's start. Enables "Eject".
    void stopbtn_Click();
    /// The next track; behind the last one the first, which does not play.
    void ftrack_Click();
    /// The current track's start; from there the track before it, or the last one.
    void btrack_Click();
    void eject_Click();

  private:
    void goOn();
    void playFrom(int track);
    void seekTo(int track);
    /// Plays on from that track's start if the disc plays, else moves to it.
    void skipTo(int track);

    ProcessState& process_;
    Form4& form_;
    CdCommands& commands_;
    DiscPoll& poll_;
    DiscState& disc_;
};

} // namespace sonarith
