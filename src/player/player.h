// SPDX-License-Identifier: GPL-3.0-or-later
// Creates one object of each class of the CD player and connects these objects to each other and to
// the player's window. This struct adds no behaviour.
#pragma once

#include "forms/windows.h"
#include "platform/platform.h"
#include "player/cd_commands.h"
#include "player/disc_poll.h"
#include "player/disc_state.h"
#include "player/level_meter.h"
#include "player/meter_capture.h"
#include "player/mixer_access.h"
#include "player/mixer_panel.h"
#include "player/mixer_state.h"
#include "player/player_window.h"
#include "player/power_switch.h"
#include "player/transport.h"
#include "settings/process_state.h"

namespace sonarith {

struct Player {
    /// All parameters must outlive this object.
    Player(const Platform& platform, ProcessState& process, Windows& windows)
        : access(platform.mixer, process),
          mixer(platform, windows.Form4, access, mixerState),
          capture(platform, windows.Form4),
          meter(platform, windows.Form4, access, mixerState, capture),
          commands(platform, process, windows),
          poll(windows.Form4, commands, disc),
          transport(process, windows.Form4, commands, poll, disc),
          power(platform.loop, windows.Form4, commands, mixer, capture, meter, poll, disc),
          window(process, windows, commands, capture, disc) {}

    MixerState mixerState;
    DiscState disc;

    MixerAccess access;
    MixerPanel mixer;
    MeterCapture capture;
    LevelMeter meter;
    CdCommands commands;
    DiscPoll poll;
    Transport transport;
    PowerSwitch power;
    PlayerWindow window;
};

} // namespace sonarith
