// SPDX-License-Identifier: GPL-3.0-or-later
// Applies the stored choice of devices to the drive slot and the sound card.
#pragma once

#include <memory>

#include "platform/chosen_devices.h"
#include "platform/device_choice.h"
#include "platform/linux/disc/drive_slot.h"
#include "platform/linux/sound/device_notices.h"
#include "platform/linux/sound/sound_card.h"
#include "platform/notices.h"
#include "platform/settings_store.h"

namespace sonarith {

class MachineDeviceChoice final : public DeviceChoice {
  public:
    /// Applies the stored choice to the card. Reports lost sound devices to `notices`. All
    /// arguments must outlive this object. The constructor of `slot` received a function
    /// `configured`, which must return drive() of this object. `slot` must not call the function
    /// before this object exists.
    MachineDeviceChoice(SettingsStore& store, disc::DriveSlot& slot, sound::SoundCard& card,
                        Notices& notices);
    ~MachineDeviceChoice() override;
    MachineDeviceChoice(const MachineDeviceChoice&) = delete;
    MachineDeviceChoice& operator=(const MachineDeviceChoice&) = delete;

    /// Detaches the sound devices from the card and closes them. Nothing is reported afterwards.
    void release();

    [[nodiscard]] std::vector<std::string> opticalDrives() const override;
    [[nodiscard]] std::vector<DeviceEntry> outputs() const override;
    [[nodiscard]] std::vector<DeviceEntry> sources() const override;
    [[nodiscard]] std::string drive() const override { return chosen_.drive(); }
    [[nodiscard]] std::string output() const override { return chosen_.output(); }
    [[nodiscard]] std::string source() const override { return chosen_.source(); }
    void setDrive(const std::string& drive) override;
    void setOutput(const std::string& name) override;
    void setSource(const std::string& name) override;
    [[nodiscard]] std::string report() const override { return slot_.report().text; }

  private:
    void applyOutput();
    void applySource();

    ChosenDevices chosen_;
    disc::DriveSlot& slot_;
    sound::SoundCard& card_;
    std::shared_ptr<sound::DeviceNotices> notices_; ///< shared with threads that a device may block
};

} // namespace sonarith
