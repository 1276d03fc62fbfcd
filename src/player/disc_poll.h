// SPDX-License-Identifier: GPL-3.0-or-later
// Polls the drive for the player, once a second and when Transport or PowerSwitch requests a poll:
// reads an inserted disc, detects that a disc was removed, and shows track and time. Plays nothing.
#pragma once

#include "forms/form4.h"
#include "player/cd_commands.h"
#include "player/disc_state.h"

namespace sonarith {

class DiscPoll {
  public:
    /// Sets the handlers of Timer6 and Timer1. All parameters must outlive this object.
    DiscPoll(Form4& form, CdCommands& commands, DiscState& disc);
    DiscPoll(const DiscPoll&) = delete;
    DiscPoll& operator=(const DiscPoll&) = delete;

    /// Polls once. A query that fails counts as a query with an empty reply. If the seek to the
    /// first track of a newly found disc fails, all devices are closed and the player's panel is
    /// unloaded, which yields.
    void UpdatePlayer();

  private:
    enum class Found { audioDisc, otherDisc };
    void discRemoved();
    [[nodiscard]] Found readDisc();
    void showPosition();

    Form4& form_;
    CdCommands& commands_;
    DiscState& disc_;
};

/// Enables or disables the buttons that need a disc: all transport buttons except "Eject".
void enableDiscButtons(Form4& form, bool enabled);

} // namespace sonarith
