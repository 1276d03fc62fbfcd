// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/image_drive.h"

#include <system_error>
#include <utility>

namespace sonarith::disc {

namespace {

DeviceProblem kindOf(ErrorNumber number) {
    switch (number) {
    case ErrorNumber::fileNotFound:
        return DeviceProblem::missing;
    case ErrorNumber::permissionDenied:
        return DeviceProblem::noPermission;
    default:
        return DeviceProblem::unreadable;
    }
}

} // namespace

ImageDrive::ImageDrive(std::filesystem::path sheet) : sheet_(std::move(sheet)) {}

Loaded ImageDrive::load() {
    if (tray_ == Tray::open) {
        return noDisc(DeviceProblem::trayOpen);
    }
    const auto disc = ImageDisc::open(sheet_);
    loadable_ = disc.ok();
    if (!disc.ok()) {
        return noDisc(kindOf(disc.error().number), disc.error().text);
    }
    disc_ = disc.value();
    return {disc.value(), {}};
}

bool ImageDrive::mediaPresent() {
    std::error_code error;
    if (tray_ == Tray::open || !std::filesystem::is_regular_file(sheet_, error)) {
        return false;
    }
    if (const auto disc = disc_.lock(); disc && !disc->unchanged()) {
        disc->eject();
        disc_.reset();
        loadable_ = false;
        return false;
    }
    // The sheet or its files may have been repaired since the last load.
    loadable_ = loadable_ || ImageDisc::open(sheet_).ok();
    return loadable_;
}

void ImageDrive::openTray() {
    tray_ = Tray::open;
    if (const auto disc = disc_.lock()) {
        disc->eject();
    }
}

void ImageDrive::closeTray() {
    tray_ = Tray::closed;
}

} // namespace sonarith::disc
