// SPDX-License-Identifier: GPL-3.0-or-later
// The player's power switch: opens the disc and the meter's input when the user switches the player
// on. Closes them and mutes the disc when the user, the start of an action or the panel's unload
// switches the player off.
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
    /// Sets the handlers of OptCD, optNoCD and Command6. All parameters must outlive this object.
    PowerSwitch(EventLoop& loop, Form4& form, CdCommands& commands, MixerPanel& mixer,
                MeterCapture& capture, LevelMeter& meter, DiscPoll& poll, DiscState& disc);
    PowerSwitch(const PowerSwitch&) = delete;
    PowerSwitch& operator=(const PowerSwitch&) = delete;

    /// Stops and saves a running capture, then switches the player on. While the player is being
    /// switched off, only deselects OptCD. Ends early if the player is switched off during a yield.
    /// If the disc device cannot be opened or its time format cannot be set, unloads the panel
    /// without a message. Yields while a capture is saved, a message box is open or the panel is
    /// unloaded. Asks no other instance of the program to release the disc, because only one
    /// instance runs per user.
    void OptCD_Click();
    /// Switches the player off and mutes the disc's line. Yields once.
    void optNoCD_Click();
    /// Switches the player off, even if it is already off, and unticks Check3 (the meter's input).
    /// Deselects both positions of the switch. Yields seven times.
    void Command6_Click();
    /// Call before the main window reads a newly chosen disc or drive: the main window then opens
    /// the device itself. If the player is on, this function closes the device, shows that there is
    /// no disc, and stops polling.
    void releaseDisc();
    /// Call after releaseDisc(): opens the device again, and the next poll finds the chosen disc.
    /// If the device cannot be opened, the player is switched off, which yields. Has no effect if
    /// the player was switched on or off since releaseDisc().
    void openDiscAgain();

    /// Called before the disc is opened. Opens the mixer, prepares the meter, stops polling, closes
    /// the device, disables the transport buttons and clears the display. If the mixer cannot be
    /// opened, does nothing else.
    void ResetPlayer();

  private:
    void openDisc(int switchedOffBefore);
    void closeDisc();
    void disableTransport();
    /// Clears the meter, and shows that the player is off.
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
    int switchingOff_ = 0; ///< the number of running procedures that switch the player off
    int timesSwitchedOff_ = 0;
    bool discReleased_ = false; ///< between releaseDisc() and openDiscAgain()
};

} // namespace sonarith
