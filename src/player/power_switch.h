// SPDX-License-Identifier: GPL-3.0-or-later
// The player's power: what is opened when it is switched on, and what is closed and silenced when
// it is switched off, by the user, by the start of an action or by the panel's close.
#pragma once

#include "forms/form4.h"
#include "platform/event_loop.h"
#include "player/cd_commands.h"
#include "player/disc_poll.h"
#include "player/disc_state.h"
#include "player/level_meter.h"
#include "player/meter_capture.h"
#include "player/mixer_panel.h"

namespace sonarith {

class PowerSwitch {
  public:
    /// Becomes the handler of OptCD, optNoCD and Command6. All outlive this.
    PowerSwitch(EventLoop& loop, Form4& form, CdCommands& commands, MixerPanel& mixer,
                MeterCapture& capture, LevelMeter& meter, DiscState& disc);
    PowerSwitch(const PowerSwitch&) = delete;
    PowerSwitch& operator=(const PowerSwitch&) = delete;

    /// On. Without a disc device the panel unloads itself, silently. A capture that runs is stopped
    /// and saved first. Only one instance of the program ever gets this far, so there is none to
    /// ask for that may hold the disc. Yields in messages, in saving, and where a command fails.
    /// Has no effect while the player is being switched off, and no further one once it was
    /// switched off meanwhile.
    void OptCD_Click();
    /// Off. The disc's line stays muted. Yields once.
    void optNoCD_Click();
    /// The whole panel off, whatever its state. Leaves neither position of the switch selected.
    /// Yields seven times.
    void Command6_Click();

    /// Mixer, meter, device and display as they are before the disc is opened; nothing without a
    /// mixer.
    void ResetPlayer();

  private:
    void openDisc(int switchedOffBefore);
    void closeDisc();
    void disableTransport();
    /// The meter at rest, and the word of the player that is off.
    void showOff();
    void clearDisplay();

    EventLoop& loop_;
    Form4& form_;
    CdCommands& commands_;
    MixerPanel& mixer_;
    MeterCapture& capture_;
    LevelMeter& meter_;
    DiscState& disc_;
    int switchingOff_ = 0; ///< procedures under way that switch it off
    int timesSwitchedOff_ = 0;
};

} // namespace sonarith
