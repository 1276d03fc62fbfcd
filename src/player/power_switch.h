// SPDX-License-Identifier: GPL-3.0-or-later
// The player's power switch: opens devices when it is switched on, and closes and mutes them when
// it is switched off by the user, by the start of an action or by the panel's close.
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
    /// Sets the handlers of OptCD, optNoCD and Command6. All must outlive this.
    PowerSwitch(EventLoop& loop, Form4& form, CdCommands& commands, MixerPanel& mixer,
                MeterCapture& capture, LevelMeter& meter, DiscPoll& poll, DiscState& disc);
    PowerSwitch(const PowerSwitch&) = delete;
    PowerSwitch& operator=(const PowerSwitch&) = delete;

    /// Switches on. Without a disc device the panel unloads itself silently. A running capture is
    /// stopped and saved first. Only one instance of the program runs per user, so no other one can
    /// use the disc. Yields in messages, while saving, and if a command fails. Does nothing while
    /// the player is being switched off, and stops if it is switched off meanwhile.
    void OptCD_Click();
    /// Switches off. The disc's line stays muted. Yields once.
    void optNoCD_Click();
    /// Switches the whole panel off in any state. Deselects both positions of the switch. Yields
    /// seven times.
    void Command6_Click();
    /// Call before the main window reads another chosen disc or drive, for which it opens the
    /// device: a player that is on closes the device, shows no disc, and stops polling.
    void releaseDisc();
    /// Call after releaseDisc(): opens the device again, and the next poll finds the chosen disc.
    /// Without a disc device the player is switched off, which yields. No effect if the player was
    /// switched meanwhile.
    void openDiscAgain();

    /// Resets mixer, meter, device and display before the disc is opened; does nothing without a
    /// mixer.
    void ResetPlayer();

  private:
    void openDisc(int switchedOffBefore);
    void closeDisc();
    void disableTransport();
    /// Resets the meter, and shows that the player is off.
    void showOff();
    void clearDisplay();

    EventLoop& loop_;
    Form4& form_;
    CdCommands& commands_;
    MixerPanel& mixer_;
    MeterCapture& capture_;
    LevelMeter& meter_;
    DiscPoll& poll_;
    DiscState& disc_;
    int switchingOff_ = 0; ///< the number of running procedures that switch it off
    int timesSwitchedOff_ = 0;
    bool discReleased_ = false; ///< between releaseDisc() and openDiscAgain()
};

} // namespace sonarith
