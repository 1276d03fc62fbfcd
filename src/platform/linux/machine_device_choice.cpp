// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/machine_device_choice.h"

#include "platform/linux/disc/optical_drive.h"
#include "platform/linux/sound/alsa_devices.h"
#include "platform/linux/sound/alsa_output.h"

namespace sonarith {

MachineDeviceChoice::MachineDeviceChoice(SettingsStore& store, disc::DriveSlot& slot,
                                         sound::SoundCard& card)
    : chosen_(store), slot_(slot), card_(card) {
    applyOutput();
    applySource();
}

std::vector<std::string> MachineDeviceChoice::opticalDrives() const {
    return disc::opticalDrives();
}

std::vector<DeviceEntry> MachineDeviceChoice::outputs() const {
    std::vector<DeviceEntry> entries;
    for (const sound::DeviceEntry& entry : sound::listOutputs()) {
        entries.push_back({entry.name, entry.description});
    }
    return entries;
}

std::vector<DeviceEntry> MachineDeviceChoice::sources() const {
    return {{"", "Compact disc"}, {ChosenDevices::mixSource, "All that is played"}};
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
    card_.setSpeakers(sound::makeOutput(chosen_.output()));
}

void MachineDeviceChoice::applySource() {
    card_.setRecordingSource(chosen_.source() == ChosenDevices::mixSource
                                 ? sound::RecordingSource::mix
                                 : sound::RecordingSource::compactDisc);
}

} // namespace sonarith
