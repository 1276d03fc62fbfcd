// SPDX-License-Identifier: GPL-3.0-or-later
// Selects the drive in use according to the user's choice, and reports its problems. It neither
// stores the choice nor shows the messages.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/disc/disc.h"
#include "platform/linux/waiting/services.h"

namespace sonarith::disc {

/// How the slot creates drives; tests replace it.
struct DriveMakers {
    std::function<std::vector<std::string>()> listOptical;
    std::function<std::shared_ptr<Drive>(const std::string& device)> makeOptical;
    std::function<std::shared_ptr<Drive>(const std::string& path)> makeImage;
};

/// The drives of this machine. `services` must outlive them.
[[nodiscard]] DriveMakers realDriveMakers(waiting::Services services);

/// For the logic's thread only.
class DriveSlot {
  public:
    /// `configured` returns the choice: empty for the first optical drive found, a device node
    /// below /dev, or else the machine path of a disc image.
    DriveSlot(std::function<std::string()> configured, DriveMakers makers);
    ~DriveSlot();
    DriveSlot(const DriveSlot&) = delete;
    DriveSlot& operator=(const DriveSlot&) = delete;

    /// The drive chosen now, or empty if the machine has none. It is the same object as long as the
    /// choice is the same (so that an open tray stays open), and may outlive the slot.
    [[nodiscard]] std::shared_ptr<Drive> openDrive();

    /// Called after each choice of the user. Choosing the image in use once more inserts it again
    /// if it was ejected. The tray of an optical drive is not moved.
    void choiceMade();

    /// Why the last load of the chosen drive found no disc, or the current remark of its disc.
    [[nodiscard]] DriveReport report() const;

  private:
    struct Reports;
    class ReportingDrive;

    const std::function<std::string()> configured_;
    const DriveMakers makers_;
    std::shared_ptr<Reports> reports_;
    std::string chosen_; ///< the choice that drive_ was made for
    std::shared_ptr<Drive> drive_;
    bool optical_ = false; ///< drive_ is not an image
};

} // namespace sonarith::disc
