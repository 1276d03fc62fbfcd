// SPDX-License-Identifier: GPL-3.0-or-later
// The machine's optical drive: its tray, whether a disc is in it, and that disc's table. How its
// sound is read is the work of optical_disc.h and paranoia_sectors.h.
#pragma once

#include <string>

#include "platform/linux/disc/disc.h"
#include "platform/linux/disc/drive_status.h"

namespace sonarith::disc {

class OpticalDrive : public Drive {
  public:
    /// `device` is a device node; that it is there and is a drive is seen at each call.
    explicit OpticalDrive(std::string device);

    [[nodiscard]] Loaded load() override;
    [[nodiscard]] bool mediaPresent() override;
    /// Passed over by a drive that refuses or has no tray, as are all failures of both.
    void openTray() override;
    void closeTray() override;

  private:
    const std::string device_;
};

} // namespace sonarith::disc
