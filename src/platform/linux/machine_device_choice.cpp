// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/machine_device_choice.h"

#include "platform/linux/disc/optical_drive.h"
#include "platform/linux/sound/alsa_input.h"
#include "platform/linux/sound/alsa_output.h"

namespace sonarith {

MachineDeviceChoice::MachineDeviceChoice(SettingsStore& store, disc::DriveSlot& slot,
                                         sound::SoundCard& card, Notices& notices)
    : chosen_(store),
      slot_(slot),
      card_(card),
      notices_(std::make_shared<sound::DeviceNotices>(notices)) {
    // An external input is recorded but not played: a microphone near the speakers, or an input
    // that records the output of this computer, would cause feedback.
    card_.setMuted(sound::Line::externalInput, true);
    applyOutput();
    applySource();
}

MachineDeviceChoice::~MachineDeviceChoice() {
    notices_->mute();
}

void MachineDeviceChoice::release() {
    notices_->mute();
    card_.setSpeakers(nullptr);
    card_.setRecordingSource(sound::RecordingSource::compactDisc);
}

std::vector<std::string> MachineDeviceChoice::opticalDrives() const {
    return disc::opticalDrives();
}

std::vector<DeviceEntry> MachineDeviceChoice::outputs() const {
    return sound::listOutputs();
}

std::vector<DeviceEntry> MachineDeviceChoice::sources() const {
    std::vector<DeviceEntry> entries{{"", "Compact disc"},
                                     {ChosenDevices::mixSource, "All that is played"}};
    const std::vector<DeviceEntry> inputs = sound::listInputs();
    entries.insert(entries.end(), inputs.begin(), inputs.end());
    return entries;
}

void MachineDeviceChoice::setDrive(const std::string& drive) {
    chosen_.setDrive(drive);
    slot_.choiceMade();
}

void MachineDeviceChoice::setOutput(const std::string& name) {
    chosen_.setOutput(name);
    applyOutput();
}

void MachineDeviceChoice::setSource(const std::string& name) {
    chosen_.setSource(name);
    applySource();
}

void MachineDeviceChoice::applyOutput() {
    const std::string name = chosen_.output();
    card_.setSpeakers(
        sound::makeOutput(name, {}, sound::reportTo(notices_, sound::SoundDevice::output, name)));
}

void MachineDeviceChoice::applySource() {
    const std::string name = chosen_.source();
    if (name.empty()) {
        card_.setRecordingSource(sound::RecordingSource::compactDisc);
    } else if (name == ChosenDevices::mixSource) {
        card_.setRecordingSource(sound::RecordingSource::mix);
    } else {
        card_.setRecordingSource(
            sound::RecordingSource::externalInput,
            sound::makeInput(name, sound::reportTo(notices_, sound::SoundDevice::input, name)));
    }
}

} // namespace sonarith
