// SPDX-License-Identifier: GPL-3.0-or-later
// Wraps a drive whose device may hang (a scratched disc, an image on a dead server): all calls to
// the drive run on a separate thread and are waited for with a bound. It reads no disc itself, and
// does not cover the reads of a loaded disc.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/disc/disc.h"
#include "platform/linux/waiting/blocking_calls.h"
#include "platform/linux/waiting/services.h"

namespace sonarith::disc {

/// For the thread of the logic.
class PatientDrive final : public Drive {
  public:
    struct Patience {
        std::chrono::milliseconds load;  ///< for the table of a disc
        std::chrono::milliseconds other; ///< for the tray
    };

    /// How long the calls made each second wait for a result: together with the end of a disc's
    /// playing, they stay within Waiting::plainMoment.
    static constexpr std::chrono::milliseconds mediumMoment{35};
    static constexpr std::chrono::milliseconds tableMoment{10};

    /// `hangingText` is the message for a drive that did not respond in time.
    PatientDrive(std::shared_ptr<Drive> drive, Patience patience, std::string hangingText,
                 waiting::Services services);

    [[nodiscard]] DriveKind kind() const override { return drive_->kind(); }
    [[nodiscard]] std::string name() const override { return drive_->name(); }
    /// `hung`, and no disc, if there is no result in time; at once while an earlier load that timed
    /// out has not returned. The disc of that load is then dropped, since its caller has given up.
    [[nodiscard]] Loaded load() override;
    /// Waits for tableMoment at most. The read continues meanwhile, and its result is returned by
    /// the next call of this or of load().
    [[nodiscard]] std::optional<Loaded> loadSoon() override;
    /// Waits for mediumMoment at most: the previous value if there is no result in time or the
    /// drive is busy. A late result becomes the known value.
    [[nodiscard]] bool mediaPresent() override;
    /// Carried out when the drive is free, also after this has returned; in the order of the calls.
    void openTray() override;
    void closeTray() override;

  private:
    struct Known;
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] bool beginLoad(std::chrono::milliseconds bound);
    [[nodiscard]] std::optional<Loaded> takeLoaded();
    void reportHanging();
    void reportResponding();

    const std::shared_ptr<Drive> drive_;
    const Patience patience_;
    const std::string hangingText_;
    Notices& notices_;
    const std::shared_ptr<Known> known_; ///< shared with the calls
    waiting::BlockingCalls calls_;
    Clock::time_point loadBegan_;
    bool loadUnanswered_ = false; ///< the last load has timed out
    bool hangingReported_ = false;
};

} // namespace sonarith::disc
