// SPDX-License-Identifier: GPL-3.0-or-later
// Stores what the panel's mixer sliders, mute switches and level meter share: the mixer's handle,
// the found controls, and one scratch value. This state is never reset, even when the panel is
// closed.
#pragma once

#include <cstdint>

#include "platform/mixer.h"

namespace sonarith {

/// A record whose control was never found has the identifier 0, which no control has.
struct MixerState {
    /// The handle of the last open that succeeded; earlier handles stay open.
    MixerHandle hMixer = 0;
    /// The results of the last call and of the last look-up of a control.
    MixerResult mixerResult = MixerResult::noError;
    bool mixerFound = false;
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
