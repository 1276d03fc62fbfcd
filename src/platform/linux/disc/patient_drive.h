// SPDX-License-Identifier: GPL-3.0-or-later
// Stands before a drive whose device may hang (a scratched disc, an image on a server that has
// gone): all that is asked of the drive is done on a thread of its own, and who asks waits for a
// bounded time. It reads no disc itself, and does nothing for the reads of a disc that is loaded.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/disc/disc.h"
#include "platform/linux/sound/abandonable_thread.h"

namespace sonarith::disc {

class PatientDrive final : public Drive {
  public:
    struct Patience {
        std::chrono::milliseconds load;  ///< for the table of a disc
        std::chrono::milliseconds other; ///< for all else
    };

    /// `noAnswer` says in words that the drive did not answer in time.
    PatientDrive(std::shared_ptr<Drive> drive, Patience patience, std::string noAnswer);
    /// Leaves behind what the drive has not done in time.
    ~PatientDrive() override;
    PatientDrive(const PatientDrive&) = delete;
    PatientDrive& operator=(const PatientDrive&) = delete;

    /// No disc, and `noAnswer` for a problem, if none comes in time; at once as long as a load that
    /// was waited for in vain has not come back.
    [[nodiscard]] Loaded load() override;
    /// What was known before, if no answer comes in time.
    [[nodiscard]] bool mediaPresent() override;
    /// Done when the drive comes to it, also after this has returned; in the order of the calls.
    void openTray() override;
    void closeTray() override;

  private:
    struct Worker;
    template <typename Answer>
    std::optional<Answer> ask(std::chrono::milliseconds patience, Answer (Drive::*question)());

    const Patience patience_;
    const std::string noAnswer_;
    std::shared_ptr<Worker> worker_; ///< shared with its thread
    sound::AbandonableThread thread_;
    bool present_ = false;        ///< as far as is known
    bool loadUnanswered_ = false; ///< the last load was waited for in vain
};

} // namespace sonarith::disc
