// SPDX-License-Identifier: GPL-3.0-or-later
// The machine's interpreter of media control strings: which device types there are, and which
// devices are open under which alias. What a device does with a command is the device's own.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/linux/mci/cd_device.h"
#include "platform/linux/mci/device.h"
#include "platform/linux/mci/devices.h"
#include "platform/media_control.h"

namespace sonarith::mci {

/// Used by the logic's thread alone.
///
/// Opens "cdaudio" (once, or several times where each open says "shareable": the aliases then stand
/// for one and the same device), and "waveaudio" as "new". Closing a device stops it and drops what
/// it has not saved. No command waits for sound, with "wait" or without; for a drive's table one
/// may (platform/waiting.h). When a recording is saved, the user is told what of the disc that was
/// played could not be read.
class Interpreter : public MediaControl {
  public:
    explicit Interpreter(Devices devices) : devices_(std::move(devices)) {}

    using MediaControl::sendString;
    int sendString(std::string_view command, ReplyBuffer* reply) override;
    [[nodiscard]] std::string errorString(int status) const override;

  private:
    [[nodiscard]] Reply run(std::string_view text);
    [[nodiscard]] Reply open(const Command& command);
    [[nodiscard]] Reply close(const Command& command);
    /// A recording has been saved at `path`: tells the user what is missing in it.
    void reportLosses(const std::string& path);
    [[nodiscard]] Outcome<std::shared_ptr<Device>>
    makeDevice(const std::string& type, const std::string& element, bool shareable);
    [[nodiscard]] Outcome<std::shared_ptr<Device>> makeCdDevice(bool shareable);

    Devices devices_;
    std::map<std::string, std::shared_ptr<Device>> open_; ///< by alias in lower case
    std::weak_ptr<CdDevice> cd_;                          ///< while any alias stands for it
    bool cdShareable_ = false;                            ///< as cd_ was opened
};

} // namespace sonarith::mci
