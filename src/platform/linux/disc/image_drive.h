// SPDX-License-Identifier: GPL-3.0-or-later
// A drive whose disc is an image file that a person has chosen. It remembers no disc: each load
// reads the files afresh.
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
    /// The image's errors in words; trayOpen without words while the tray is open.
    [[nodiscard]] Loaded load() override;
    /// The tray is closed and the sheet exists; if the last load failed, what stands there now can
    /// be read again. False once when a file of the disc that was loaded last, and is still in use,
    /// has been replaced, written to or deleted: that disc is gone from then on, and what the files
    /// hold now can be loaded.
    [[nodiscard]] bool mediaPresent() override;
    /// The disc that was loaded is gone from now on, even for who still plays it.
    void openTray() override;
    void closeTray() override;

  private:
    enum class Tray { closed, open };

    const std::filesystem::path sheet_;
    Tray tray_ = Tray::closed;
    bool loadable_ = true; ///< as far as is known
    std::weak_ptr<ImageDisc> disc_;
};

} // namespace sonarith::disc
