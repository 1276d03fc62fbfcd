// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/machine_devices.h"

#include <utility>

namespace sonarith::mci {

Devices devicesOf(Machine machine) {
    Devices devices;
    devices.drive = std::move(machine.drive);
    devices.path = std::move(machine.path);
    devices.notices = &machine.notices;
    devices.transport = [&card = machine.card,
                         now = machine.now](std::shared_ptr<disc::Disc> disc) {
        return std::make_unique<CardTransport>(std::move(disc), card, now);
    };
    devices.recorder = [&card = machine.card, now = machine.now,
                        folders = std::move(machine.recordingFolders),
                        input = std::make_shared<RecordingInput>(
                            machine.notices, std::move(machine.saves), machine.recordingTiming)] {
        return std::make_unique<CardRecorder>(card, now, folders, input);
    };
    return devices;
}

} // namespace sonarith::mci
