// SPDX-License-Identifier: GPL-3.0-or-later
// A drive whose disc is an image file that the user has chosen. It caches no disc: each load reads
// the files again.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/linux/disc/disc.h"
#include "platform/linux/disc/image_disc.h"

namespace sonarith::disc {

class ImageDrive final : public Drive {
  public:
    /// `sheet` is the path of a CUE sheet or TOC; nothing is read before `load`.
    explicit ImageDrive(std::filesystem::path sheet);

    [[nodiscard]] DriveKind kind() const override { return DriveKind::image; }
    [[nodiscard]] std::string name() const override { return "the disc image " + sheet_.string(); }
    /// Reports the image's errors with their messages, or trayOpen without a message while the tray
    /// is open.
    [[nodiscard]] Loaded load() override;
    /// Whether the tray is closed and the sheet exists; after a failed load, whether the files can
    /// now be read. Returns false once if a file of the loaded disc has been replaced, written to
    /// or deleted while the disc is in use. That disc is gone from then on, and the present
    /// contents of the files can be loaded.
    [[nodiscard]] bool mediaPresent() override;
    /// Removes the loaded disc: it is gone also for an owner that still plays it.
    void openTray() override;
    void closeTray() override;

  private:
    enum class Tray { closed, open };

    const std::filesystem::path sheet_;
    Tray tray_ = Tray::closed;
    bool loadable_ = true; ///< false after a failed load or a change, until a check succeeds
    std::weak_ptr<ImageDisc> disc_;
};

} // namespace sonarith::disc
