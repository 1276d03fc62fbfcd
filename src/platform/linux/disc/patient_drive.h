// SPDX-License-Identifier: GPL-3.0-or-later
// Stands before a drive whose device may hang (a scratched disc, an image on a server that has
// gone): all that is asked of the drive is done on a thread of its own, and waited for with a
// bound. It reads no disc itself, and does nothing for the reads of a disc that is loaded.
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

    /// What the questions that are asked each second wait for an answer: together with the end of a
    /// disc's playing, they stay within Waiting::plainMoment.
    static constexpr std::chrono::milliseconds mediumMoment{35};
    static constexpr std::chrono::milliseconds tableMoment{10};

    /// `noAnswer` says in words that the drive did not answer in time.
    PatientDrive(std::shared_ptr<Drive> drive, Patience patience, std::string noAnswer,
                 waiting::Services services);

    [[nodiscard]] DriveKind kind() const override { return drive_->kind(); }
    [[nodiscard]] std::string name() const override { return drive_->name(); }
    /// `hung`, and no disc, if none comes in time; at once as long as a load that did not come in
    /// time has not returned. Its disc is dropped then, as whoever wanted it has gone on.
    [[nodiscard]] Loaded load() override;
    /// Waits for tableMoment at most. The read goes on meanwhile, and its outcome is given
    /// to the next call of this or of load().
    [[nodiscard]] std::optional<Loaded> loadSoon() override;
    /// Waits for mediumMoment at most: what was known before, if no answer comes in time or
    /// the drive is busy. The answer that comes late is what is known then.
    [[nodiscard]] bool mediaPresent() override;
    /// Done when the drive comes to it, also after this has returned; in the order of the calls.
    void openTray() override;
    void closeTray() override;

  private:
    struct Known;
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] bool beginLoad(std::chrono::milliseconds bound);
    [[nodiscard]] std::optional<Loaded> takeLoaded();
    void sayThatItHangs();
    void sayThatItAnswers();

    const std::shared_ptr<Drive> drive_;
    const Patience patience_;
    const std::string noAnswer_;
    Notices& notices_;
    const std::shared_ptr<Known> known_; ///< shared with the calls
    waiting::BlockingCalls calls_;
    Clock::time_point loadBegan_;
    bool loadUnanswered_ = false; ///< the last load has not come in time
    bool saidThatItHangs_ = false;
};

} // namespace sonarith::disc
