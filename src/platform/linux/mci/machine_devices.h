// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the devices of a real machine for the command interpreter: discs are played through the
// software sound card, and the card's sound is recorded. The caller chooses the drive and the
// folders of the recordings.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/linux/mci/card_recorder.h"
#include "platform/linux/mci/card_transport.h"
#include "platform/linux/mci/devices.h"
#include "platform/linux/sound/pending_saves.h"
#include "platform/notices.h"

namespace sonarith::mci {

struct Machine {
    sound::SoundCard& card;                              ///< must outlive the interpreter
    Clock now;                                           ///< the clock of the sound card's thread
    std::function<std::shared_ptr<disc::Drive>()> drive; ///< as Devices::drive
    RecordingFolders recordingFolders;
    std::function<std::filesystem::path(const std::string&)> path; ///< as Devices::path
    Notices& notices; ///< about discs and recordings; must outlive the interpreter
    /// Counts the recordings whose requested save is not complete; may be a null pointer.
    std::shared_ptr<sound::PendingSaves> saves = {};
    sound::RecordingTiming recordingTiming = {};
};

[[nodiscard]] Devices devicesOf(Machine machine);

} // namespace sonarith::mci
