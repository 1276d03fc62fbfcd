// SPDX-License-Identifier: GPL-3.0-or-later
// Provides the drive that the user has chosen, and reports the problems of that drive. The user's
// choice is stored elsewhere, and the messages about the problems are shown elsewhere.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/disc/disc.h"
#include "platform/linux/waiting/services.h"

namespace sonarith::disc {

/// The functions with which DriveSlot finds and creates drives; tests replace them.
struct DriveMakers {
    std::function<std::vector<std::string>()> listOptical;
    std::function<std::shared_ptr<Drive>(const std::string& device)> makeOptical;
    std::function<std::shared_ptr<Drive>(const std::string& path)> makeImage;
};

/// The functions for the drives of this machine. The objects in `services` must outlive the
/// returned functions and the Drive objects that these functions create.
[[nodiscard]] DriveMakers realDriveMakers(waiting::Services services);

/// For the logic thread only.
class DriveSlot {
  public:
    /// `configured` returns the user's choice: empty for the first optical drive found, a device
    /// node below /dev, or else the machine path of a disc image.
    DriveSlot(std::function<std::string()> configured, DriveMakers makers);
    ~DriveSlot();
    DriveSlot(const DriveSlot&) = delete;
    DriveSlot& operator=(const DriveSlot&) = delete;

    /// Returns the drive chosen now; null if the choice is the first optical drive and the machine
    /// has none. As long as the device node or the image is the same, the same object is returned,
    /// so that an image's open tray stays open. The returned object may outlive this one.
    [[nodiscard]] std::shared_ptr<Drive> openDrive();

    /// Called after each choice of the user. If the user chooses the current image again after it
    /// was ejected, it is inserted again. The tray of an optical drive is not moved.
    void choiceMade();

    /// The problem of the last openDrive() or of the drive's last load. If this problem has no
    /// message: the remark (Disc::remark) of the loaded disc, even after the disc object was
    /// destroyed.
    [[nodiscard]] DriveReport report() const;

  private:
    struct Reports;
    class ReportingDrive;

    const std::function<std::string()> configured_;
    const DriveMakers makers_;
    std::shared_ptr<Reports> reports_;
    std::string chosen_; ///< the choice for which drive_ was created
    std::shared_ptr<Drive> drive_;
    bool optical_ = false; ///< drive_ is a real drive and not an image
};

} // namespace sonarith::disc
