// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/drive_slot.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/linux/disc/image_drive.h"
#include "platform/linux/disc/optical_drive.h"

namespace sonarith::disc {

namespace {

/// A block device is a drive, and so is a name directly below /dev that is not there: a drive that
/// was unplugged must not turn into a missing image.
bool namesADevice(const std::string& chosen) {
    const std::filesystem::path path(chosen);
    std::error_code ignored;
    if (std::filesystem::is_block_file(path, ignored))
        return true;
    return path.parent_path() == "/dev" && !std::filesystem::exists(path, ignored);
}

} // namespace

DriveMakers realDriveMakers() {
    return {opticalDrives,
            [](const std::string& device) { return std::make_shared<OpticalDrive>(device); },
            [](const std::string& path) {
                return std::make_shared<ImageDrive>(path);
            }};
}

struct DriveSlot::Words {
    std::string problem;
    std::weak_ptr<Disc> disc; ///< its remark may grow while it is read
};

/// Passes all on to the drive it stands before, and notes what a load had to say.
class DriveSlot::ReportingDrive : public Drive {
  public:
    ReportingDrive(std::shared_ptr<Drive> drive, std::shared_ptr<Words> words)
        : drive_(std::move(drive)), words_(std::move(words)) {}

    Loaded load() override {
        Loaded loaded = drive_->load();
        words_->problem = loaded.problem;
        words_->disc = loaded.disc;
        return loaded;
    }
    bool mediaPresent() override { return drive_->mediaPresent(); }
    void openTray() override { drive_->openTray(); }
    void closeTray() override { drive_->closeTray(); }

  private:
    const std::shared_ptr<Drive> drive_;
    const std::shared_ptr<Words> words_;
};

DriveSlot::DriveSlot(std::function<std::string()> configured, DriveMakers makers)
    : configured_(std::move(configured)),
      makers_(std::move(makers)),
      words_(std::make_shared<Words>()) {}

DriveSlot::~DriveSlot() = default;

std::shared_ptr<Drive> DriveSlot::openDrive() {
    std::string chosen = configured_();
    bool optical = !chosen.empty() && namesADevice(chosen);
    if (chosen.empty()) {
        const std::vector<std::string> found = makers_.listOptical();
        if (found.empty()) {
            drive_.reset();
            words_ = std::make_shared<Words>();
            words_->problem = "This machine has no optical drive.";
            return nullptr;
        }
        chosen = found.front();
        optical = true;
    }
    if (drive_ && chosen == chosen_)
        return drive_;
    // Words of their own for each choice: a former drive that is still in use says no more here.
    words_ = std::make_shared<Words>();
    chosen_ = chosen;
    drive_ = std::make_shared<ReportingDrive>(
        optical ? makers_.makeOptical(chosen) : makers_.makeImage(chosen), words_);
    return drive_;
}

std::string DriveSlot::report() const {
    if (!words_->problem.empty())
        return words_->problem;
    const std::shared_ptr<Disc> disc = words_->disc.lock();
    return disc ? disc->remark() : std::string();
}

} // namespace sonarith::disc
