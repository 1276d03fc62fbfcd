// SPDX-License-Identifier: GPL-3.0-or-later
// Finds, reads, writes and unmutes the controls of the card's mixer for the player's panel. Here a
// control is a level, a mute switch or a peak meter of the mixer, not a part of a form.
// mixer_panel.h assigns the controls to sliders.
#pragma once

#include <cstdint>

#include "platform/mixer.h"
#include "settings/process_state.h"

namespace sonarith {

class MixerAccess {
  public:
    /// Both parameters must outlive this object.
    MixerAccess(Mixer& mixer, ProcessState& process) : mixer_(mixer), process_(process) {}

    /// Finds the control of type `controlType` (a value of mixer_control) of the line of type
    /// `componentType` (a value of mixer_line). Returns whether the control was found; if not,
    /// `record` keeps its previous control.
    bool GetMixerControl(MixerHandle mixer, std::uint32_t componentType, std::uint32_t controlType,
                         MixerControl& record);
    /// The control's value; -1 if it cannot be read. Sets ProcessState::mixerLastError.
    [[nodiscard]] std::int32_t GetControlValue(MixerHandle mixer, const MixerControl& record);
    /// Writes `value` and returns whether the control has accepted it. Sets
    /// ProcessState::mixerLastError.
    bool SetControlValue(MixerHandle mixer, const MixerControl& record, std::int32_t value);
    /// Deliberate: unmutes, even if `state` is true; to mute, call SetControlValue() with 1.
    /// Returns whether the control has accepted the value.
    bool SetMuteControl(MixerHandle mixer, const MixerControl& record, bool state);

  private:
    Mixer& mixer_;
    ProcessState& process_;
};

} // namespace sonarith
