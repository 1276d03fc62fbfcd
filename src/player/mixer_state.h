// SPDX-License-Identifier: GPL-3.0-or-later
// Stores what the CD player's mixer sliders, mute switches and level meter share: the mixer's
// handle, the last results, the mixer controls that were found, and scratch values. This state is
// never reset, even when the player's panel is closed.
#pragma once

#include <cstdint>

#include "platform/mixer.h"

namespace sonarith {

/// Each MixerControl has the identifier 0 until a control of the mixer is found for it. No control
/// of the mixer has this identifier.
struct MixerState {
    /// The handle of the last open that succeeded; earlier handles stay open.
    MixerHandle hMixer = 0;
    /// The result of the last open or of the meter's last read, whichever was later.
    MixerResult mixerResult = MixerResult::noError;
    bool mixerFound = false; ///< whether the last look-up of a mixer control found it
    /// Scratch value of sliders and meter. Each handler of a slider or of the meter writes the
    /// value before reading the value, and does not yield in between.
    std::int32_t Volume = 0;

    MixerControl MuteCtrlA; ///< scratch record of the mute switches
    MixerControl MuteCtrlB; ///< second scratch record of the mute switches
    MixerControl VolCtrl;   ///< master volume
    MixerControl SpareCtrl; ///< its control is never looked up
    MixerControl CDVolCtrl;
    MixerControl TrebleCtrl;
    MixerControl BassCtrl;
    MixerControl InputMeterCtrl;
    MixerControl WaveMeterCtrl;
};

} // namespace sonarith
