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

// A drive may spin up before its table is read, and so may a hard disk with images. A tray takes a
// few seconds to move; a caller that waits for it to close queries the medium anyway.
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

/// The messages of the last load, kept also after its disc has been destroyed.
struct DriveSlot::Words {
    class SpokenDisc;

    /// The drive is empty: messages of an earlier disc no longer apply.
    void forgetDisc() {
        const std::lock_guard lock(mutex);
        disc = nullptr;
        lastRemark.clear();
    }

    DriveReport problem;
    std::mutex mutex; ///< protects the members below: a player may release its disc on any thread
    const SpokenDisc* disc = nullptr; ///< its remark may grow while it is read
    std::string lastRemark;           ///< of that disc, once it has been destroyed
};

/// Forwards all calls to the wrapped disc, and stores its remark when it is destroyed.
class DriveSlot::Words::SpokenDisc : public Disc {
  public:
    SpokenDisc(std::shared_ptr<Disc> disc, std::shared_ptr<Words> words)
        : disc_(std::move(disc)), words_(std::move(words)) {
        const std::lock_guard lock(words_->mutex);
        words_->disc = this;
        words_->lastRemark.clear();
    }
    ~SpokenDisc() override {
        const std::lock_guard lock(words_->mutex);
        if (words_->disc == this) {
            words_->lastRemark = disc_->remark();
            words_->disc = nullptr;
        }
    }
    SpokenDisc(const SpokenDisc&) = delete;
    SpokenDisc& operator=(const SpokenDisc&) = delete;

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
    const std::shared_ptr<Words> words_;
};

/// Forwards all calls to the wrapped drive, and records the messages of each load.
class DriveSlot::ReportingDrive : public Drive {
  public:
    ReportingDrive(std::shared_ptr<Drive> drive, std::shared_ptr<Words> words)
        : drive_(std::move(drive)), words_(std::move(words)) {}

    DriveKind kind() const override { return drive_->kind(); }
    std::string name() const override { return drive_->name(); }
    Loaded load() override { return noted(drive_->load()); }
    std::optional<Loaded> loadSoon() override {
        std::optional<Loaded> loaded = drive_->loadSoon();
        return loaded ? std::optional(noted(std::move(*loaded))) : std::nullopt;
    }
    bool mediaPresent() override { return drive_->mediaPresent(); }
    void openTray() override { drive_->openTray(); }
    void closeTray() override { drive_->closeTray(); }

  private:
    Loaded noted(Loaded loaded) {
        words_->problem = loaded.problem;
        if (loaded.disc) {
            loaded.disc = std::make_shared<Words::SpokenDisc>(std::move(loaded.disc), words_);
        } else if (loaded.problem.text.empty()) {
            words_->forgetDisc();
        }
        return loaded;
    }

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
    const bool firstFound = chosen.empty();
    if (firstFound) {
        const std::vector<std::string> found = makers_.listOptical();
        if (found.empty()) {
            drive_.reset();
            words_ = std::make_shared<Words>();
            words_->problem = {DeviceProblem::missing, "This machine has no optical drive."};
            return nullptr;
        }
        chosen = found.front();
    }
    if (drive_ && chosen == chosen_) {
        return drive_;
    }
    // A separate object for each choice: a previous drive that is still in use no longer reports
    // here.
    words_ = std::make_shared<Words>();
    chosen_ = chosen;
    optical_ = firstFound || namesADevice(chosen);
    drive_ = std::make_shared<ReportingDrive>(
        optical_ ? makers_.makeOptical(chosen) : makers_.makeImage(chosen), words_);
    return drive_;
}

void DriveSlot::choiceMade() {
    if (drive_ && !optical_ && chosen_ == configured_()) {
        drive_->closeTray();
    }
}

DriveReport DriveSlot::report() const {
    if (!words_->problem.text.empty()) {
        return words_->problem;
    }
    const std::lock_guard lock(words_->mutex);
    return {words_->problem.kind, words_->disc ? words_->disc->remark() : words_->lastRemark};
}

} // namespace sonarith::disc
