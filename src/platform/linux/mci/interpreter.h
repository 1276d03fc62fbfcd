// SPDX-License-Identifier: GPL-3.0-or-later
// Interprets media control strings: opens and closes devices, and passes all other commands to the
// open devices, which carry them out. A command names an open device by the alias that the device
// got when it was opened.
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

/// For the logic thread only.
///
/// Opens devices of the types "cdaudio" and "waveaudio". A "waveaudio" records a new sound and
/// opens no existing file. An open "cdaudio" can be opened again only if each "open" has the
/// keyword "shareable"; all aliases then name the same device. Closing a device (for a shared
/// device: its last alias) stops it and drops its unsaved sound. No command waits for the end of
/// playing or recording, even with the keyword "wait". A command may wait until a disc's table has
/// been read (platform/waiting.h). When a recording is saved, the user is notified of the parts of
/// the played disc that could not be read.
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
    /// Called after a recording was saved at `path`: notifies the user of the sound that could not
    /// be read.
    void reportLosses(const std::string& path);
    [[nodiscard]] Outcome<std::shared_ptr<Device>>
    makeDevice(const std::string& type, const std::string& element, bool shareable);
    [[nodiscard]] Outcome<std::shared_ptr<Device>> makeCdDevice(bool shareable);

    Devices devices_;
    std::map<std::string, std::shared_ptr<Device>> open_; ///< by alias in lower case
    std::weak_ptr<CdDevice> cd_;                          ///< empty if no "cdaudio" is open
    bool cdShareable_ = false;                            ///< whether cd_ was opened as shareable
};

} // namespace sonarith::mci
