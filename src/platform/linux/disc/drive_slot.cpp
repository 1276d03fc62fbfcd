// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/drive_slot.h"

#include <chrono>
#include <mutex>
#include <utility>

#include "platform/device_node.h"
#include "platform/linux/disc/image_drive.h"
#include "platform/linux/disc/optical_drive.h"
#include "platform/linux/disc/patient_drive.h"

namespace sonarith::disc {

namespace {

using namespace std::chrono_literals;

// The time limits of a load include the spin-up of the optical drive, or of the hard disk that
// holds the image. A tray command may time out before the tray has finished moving. This does no
// harm: the command continues on the drive's thread, and a caller that needs the tray to be closed
// queries the medium afterwards.
constexpr PatientDrive::Patience opticalPatience{OpticalDrive::longestSpinUp + 12s, 1s};
constexpr PatientDrive::Patience imagePatience{10s, 1s};

} // namespace

DriveMakers realDriveMakers(waiting::Services services) {
    return {opticalDrives,
            [services](const std::string& device) {
                return std::make_shared<PatientDrive>(
                    std::make_shared<OpticalDrive>(device), opticalPatience,
                    "The drive " + device + " does not respond.", services);
            },
            [services](const std::string& path) {
                return std::make_shared<PatientDrive>(
                    std::make_shared<ImageDrive>(path), imagePatience,
                    path + ": the disk or server that holds it does not respond", services);
            }};
}

/// The messages for report(): the problem of the last openDrive() or load, and the remark of the
/// last loaded disc. The remark is kept after the disc was destroyed.
struct DriveSlot::Reports {
    class ReportedDisc;

    /// Called when the drive was found empty: the remark of an earlier disc no longer applies.
    void clearDisc() {
        const std::lock_guard lock(mutex);
        disc = nullptr;
        lastRemark.clear();
    }

    DriveReport problem;
    std::mutex mutex; ///< protects the members below, since any thread may destroy a disc
    /// The last loaded disc, whose remark may change while the disc is read. Null after the disc
    /// was destroyed or the drive was found empty.
    const ReportedDisc* disc = nullptr;
    std::string lastRemark; ///< of the last loaded disc, after that disc was destroyed
};

/// Forwards all calls to the wrapped disc. The destructor stores the last remark of the wrapped
/// disc, unless a later load returned a disc or found the drive empty.
class DriveSlot::Reports::ReportedDisc : public Disc {
  public:
    ReportedDisc(std::shared_ptr<Disc> disc, std::shared_ptr<Reports> reports)
        : disc_(std::move(disc)), reports_(std::move(reports)) {
        const std::lock_guard lock(reports_->mutex);
        reports_->disc = this;
        reports_->lastRemark.clear();
    }
    ~ReportedDisc() override {
        const std::lock_guard lock(reports_->mutex);
        if (reports_->disc == this) {
            reports_->lastRemark = disc_->remark();
            reports_->disc = nullptr;
        }
    }
    ReportedDisc(const ReportedDisc&) = delete;
    ReportedDisc& operator=(const ReportedDisc&) = delete;

    [[nodiscard]] const Table& table() const override { return disc_->table(); }
    [[nodiscard]] std::string remark() const override { return disc_->remark(); }
    [[nodiscard]] Damage damageIn(std::int64_t first, std::int64_t end) const override {
        return disc_->damageIn(first, end);
    }

  private:
    [[nodiscard]] ReadOutcome readSectors(std::int64_t first, std::span<sound::StereoFrame> out,
                                          const std::stop_token& stop) override {
        return disc_->read(first, out, stop);
    }

    const std::shared_ptr<Disc> disc_;
    const std::shared_ptr<Reports> reports_;
};

/// Forwards all calls to the wrapped drive, and records the messages of each load.
class DriveSlot::ReportingDrive : public Drive {
  public:
    ReportingDrive(std::shared_ptr<Drive> drive, std::shared_ptr<Reports> reports)
        : drive_(std::move(drive)), reports_(std::move(reports)) {}

    DriveKind kind() const override { return drive_->kind(); }
    std::string name() const override { return drive_->name(); }
    Loaded load() override { return recorded(drive_->load()); }
    std::optional<Loaded> loadSoon() override {
        std::optional<Loaded> loaded = drive_->loadSoon();
        return loaded ? std::optional(recorded(std::move(*loaded))) : std::nullopt;
    }
    bool mediaPresent() override { return drive_->mediaPresent(); }
    void openTray() override { drive_->openTray(); }
    void closeTray() override { drive_->closeTray(); }

  private:
    Loaded recorded(Loaded loaded) {
        reports_->problem = loaded.problem;
        if (loaded.disc) {
            loaded.disc = std::make_shared<Reports::ReportedDisc>(std::move(loaded.disc), reports_);
        } else if (loaded.problem.text.empty()) {
            reports_->clearDisc();
        }
        return loaded;
    }

    const std::shared_ptr<Drive> drive_;
    const std::shared_ptr<Reports> reports_;
};

DriveSlot::DriveSlot(std::function<std::string()> configured, DriveMakers makers)
    : configured_(std::move(configured)),
      makers_(std::move(makers)),
      reports_(std::make_shared<Reports>()) {}

DriveSlot::~DriveSlot() = default;

std::shared_ptr<Drive> DriveSlot::openDrive() {
    std::string chosen = configured_();
    const bool firstFound = chosen.empty();
    if (firstFound) {
        const std::vector<std::string> found = makers_.listOptical();
        if (found.empty()) {
            drive_.reset();
            reports_ = std::make_shared<Reports>();
            reports_->problem = {DeviceProblem::missing, "This machine has no optical drive."};
            return nullptr;
        }
        chosen = found.front();
    }
    if (drive_ && chosen == chosen_) {
        return drive_;
    }
    // Each choice gets its own Reports object, so that a previous drive that is still in use cannot
    // change the report.
    reports_ = std::make_shared<Reports>();
    chosen_ = chosen;
    optical_ = firstFound || namesADevice(chosen);
    drive_ = std::make_shared<ReportingDrive>(
        optical_ ? makers_.makeOptical(chosen) : makers_.makeImage(chosen), reports_);
    return drive_;
}

void DriveSlot::choiceMade() {
    if (drive_ && !optical_ && chosen_ == configured_()) {
        drive_->closeTray();
    }
}

DriveReport DriveSlot::report() const {
    if (!reports_->problem.text.empty()) {
        return reports_->problem;
    }
    const std::lock_guard lock(reports_->mutex);
    return {reports_->problem.kind,
            reports_->disc ? reports_->disc->remark() : reports_->lastRemark};
}

} // namespace sonarith::disc
