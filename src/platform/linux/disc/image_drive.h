// SPDX-License-Identifier: GPL-3.0-or-later
// Emulates a drive whose disc is a disc image that the user has chosen. The drive caches no disc:
// each load reads the files again.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/linux/disc/disc.h"
#include "platform/linux/disc/image_disc.h"

namespace sonarith::disc {

class ImageDrive final : public Drive {
  public:
    /// `sheet` is the path of a CUE sheet or TOC; the constructor reads nothing.
    explicit ImageDrive(std::filesystem::path sheet);

    [[nodiscard]] DriveKind kind() const override { return DriveKind::image; }
    [[nodiscard]] std::string name() const override { return "the disc image " + sheet_.string(); }
    /// Returns the disc, or a problem with a message if the image cannot be read. While the tray is
    /// open, returns trayOpen without a message.
    [[nodiscard]] Loaded load() override;
    /// Returns false while the tray is open or the sheet does not exist, and after a failed load
    /// until the files can be read. If a file of the loaded disc was replaced, written to or
    /// deleted while the disc is in use, the next call returns false; from then on, reads of that
    /// disc return `gone`, and load() reads the new content.
    [[nodiscard]] bool mediaPresent() override;
    /// Ejects the loaded disc: later reads return `gone`, even for a player that still uses the
    /// disc.
    void openTray() override;
    void closeTray() override;

  private:
    enum class Tray { closed, open };

    const std::filesystem::path sheet_;
    Tray tray_ = Tray::closed;
    bool loadable_ = true; ///< false after a failed load or a change, until the files can be read
    std::weak_ptr<ImageDisc> disc_;
};

} // namespace sonarith::disc
