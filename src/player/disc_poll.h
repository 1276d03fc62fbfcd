// SPDX-License-Identifier: GPL-3.0-or-later
// The player's look at the drive, once a second and after each button: reads a disc that was put
// in, notices one that was taken out, and shows track and time. It plays nothing.
#pragma once

#include "forms/form4.h"
#include "player/cd_commands.h"
#include "player/disc_state.h"

namespace sonarith {

class DiscPoll {
  public:
    /// Becomes the handler of Timer6 and Timer1. All outlive this.
    DiscPoll(Form4& form, CdCommands& commands, DiscState& disc);
    DiscPoll(const DiscPoll&) = delete;
    DiscPoll& operator=(const DiscPoll&) = delete;

    /// One look. Every failure of a step is ignored: the step leaves its target as it was. Yields
    /// if a disc that was just found cannot be moved to its first track.
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

/// The buttons that need a disc: all of the transport's but "Eject".
void enableDiscButtons(Form4& form, bool enabled);

} // namespace sonarith
