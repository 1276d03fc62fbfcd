// SPDX-License-Identifier: GPL-3.0-or-later
// Which drive is in use, by what the user has chosen, and what there is to say of it. It neither
// stores the choice nor shows the words.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/disc/disc.h"
#include "platform/linux/waiting/services.h"

namespace sonarith::disc {

/// How the slot comes to drives; tests put others here.
struct DriveMakers {
    std::function<std::vector<std::string>()> listOptical;
    std::function<std::shared_ptr<Drive>(const std::string& device)> makeOptical;
    std::function<std::shared_ptr<Drive>(const std::string& path)> makeImage;
};

/// The drives of this machine. `services` outlive them.
[[nodiscard]] DriveMakers realDriveMakers(waiting::Services services);

/// All members belong to the logic's thread.
class DriveSlot {
  public:
    /// `configured` gives the choice: empty for the first optical drive that is found, a device
    /// node below /dev, or else the path of a disc image, in the machine's own form.
    DriveSlot(std::function<std::string()> configured, DriveMakers makers);
    ~DriveSlot();
    DriveSlot(const DriveSlot&) = delete;
    DriveSlot& operator=(const DriveSlot&) = delete;

    /// The drive that is chosen now, or empty if the machine has none. It is the same object for
    /// as long as the choice is the same (so that an open tray stays open), and may be kept longer
    /// than the slot.
    [[nodiscard]] std::shared_ptr<Drive> openDrive();

    /// A person has just made the choice, perhaps the same again: an image that had been ejected is
    /// put in again. The tray of an optical drive is left alone.
    void choiceMade();

    /// Why the last load of the chosen drive found no disc, or what its disc has to remark at this
    /// moment.
    [[nodiscard]] DriveReport report() const;

  private:
    struct Words;
    class ReportingDrive;

    const std::function<std::string()> configured_;
    const DriveMakers makers_;
    std::shared_ptr<Words> words_;
    std::string chosen_; ///< what drive_ was made for
    std::shared_ptr<Drive> drive_;
    bool optical_ = false; ///< drive_ is no image
};

} // namespace sonarith::disc
