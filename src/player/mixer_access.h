// SPDX-License-Identifier: GPL-3.0-or-later
// The few operations on mixer controls that the panel is built of: look up, read, write, unmute.
// Which control belongs to which slider is not known here.
#pragma once

#include <cstdint>

#include "platform/mixer.h"
#include "settings/process_state.h"

namespace sonarith {

class MixerAccess {
  public:
    /// Both outlive this.
    MixerAccess(Mixer& mixer, ProcessState& process) : mixer_(mixer), process_(process) {}

    /// Looks up the control of `controlType` of the line of `componentType` (mixer_control,
    /// mixer_line). Whether it was found; if not, `record` keeps the control that it had.
    bool GetMixerControl(MixerHandle mixer, std::uint32_t componentType, std::uint32_t controlType,
                         MixerControl& record);
    /// The control's value; -1 if it cannot be read. Sets mixerLastError.
    [[nodiscard]] std::int32_t GetControlValue(MixerHandle mixer, const MixerControl& record);
    /// Whether the control has taken `value`. Sets mixerLastError.
    bool SetControlValue(MixerHandle mixer, const MixerControl& record, std::int32_t value);
    /// Unmutes, whatever `state` is, which is meant so: muting is SetControlValue() with 1. Whether
    /// the control has taken it.
    bool SetMuteControl(MixerHandle mixer, const MixerControl& record, bool state);

  private:
    Mixer& mixer_;
    ProcessState& process_;
};

} // namespace sonarith
