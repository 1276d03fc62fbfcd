// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/mixer_access.h"

namespace sonarith {

namespace {

/// Returns the request to read or write one value of `record`'s control.
MixerControlDetails detailsOf(const MixerControl& record, std::int32_t& value) {
    MixerControlDetails details;
    details.cbStruct = mixerControlDetailsSize;
    details.dwControlID = record.dwControlID;
    details.cChannels = 1;
    details.cMultipleItems = 0;
    details.cbDetails = sizeof(value);
    details.paDetails = &value;
    return details;
}

} // namespace

bool MixerAccess::GetMixerControl(MixerHandle mixer, std::uint32_t componentType,
                                  std::uint32_t controlType, MixerControl& record) {
    MixerLine line;
    line.cbStruct = mixerLineSize;
    line.dwComponentType = componentType;
    if (mixer_.getLineInfo(mixer, line) != MixerResult::noError) {
        return false;
    }
    MixerControl found;
    MixerLineControls controls;
    controls.cbStruct = mixerLineControlsSize;
    controls.dwLineID = line.dwLineID;
    controls.dwControlType = controlType;
    controls.cControls = 1;
    controls.cbmxctrl = mixerControlSize;
    controls.pamxctrl = &found;
    record.cbStruct = mixerControlSize;
    if (mixer_.getLineControls(mixer, controls) != MixerResult::noError) {
        return false;
    }
    record = found;
    return true;
}

std::int32_t MixerAccess::GetControlValue(MixerHandle mixer, const MixerControl& record) {
    std::int32_t value = 0;
    MixerControlDetails details = detailsOf(record, value);
    process_.mixerLastError = mixer_.getControlDetails(mixer, details);
    return process_.mixerLastError == MixerResult::noError ? value : -1;
}

bool MixerAccess::SetControlValue(MixerHandle mixer, const MixerControl& record,
                                  std::int32_t value) {
    process_.mixerLastError = mixer_.setControlDetails(mixer, detailsOf(record, value));
    return process_.mixerLastError == MixerResult::noError;
}

bool MixerAccess::SetMuteControl(MixerHandle mixer, const MixerControl& record, bool /*state*/) {
    return SetControlValue(mixer, record, 0);
}

} // namespace sonarith
