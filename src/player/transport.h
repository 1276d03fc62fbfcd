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
    /// Sets the handlers of the six buttons. All must outlive this.
    Transport(ProcessState& process, Form4& form, CdCommands& commands, DiscPoll& poll,
              DiscState& disc);
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;

    // Deliberate: a failed checked command unloads the panel, which yields. The handler then
    // continues, and its remaining commands fail.

    /// Continues after a pause; otherwise plays the track that is selected in the main window,
    /// or the current track if none is selected. Deliberate: on the last track nothing is sent.
    void play_Click();
    void pause_Click();
    /// Stops and moves to the current track's start. Enables "Eject".
    void stopbtn_Click();
    /// Skips to the next track; on the last track moves to the first one without playing it.
    void ftrack_Click();
    /// Skips to the start of the current track. At that start, skips to the previous track, or on
    /// the first track to the last one.
    void btrack_Click();
    void eject_Click();

  private:
    void goOn();
    void playFrom(int track);
    void seekTo(int track);
    /// Plays from the track's start if the disc plays, otherwise only moves to that start.
    void skipTo(int track);

    ProcessState& process_;
    Form4& form_;
    CdCommands& commands_;
    DiscPoll& poll_;
    DiscState& disc_;
};

} // namespace sonarith
