// SPDX-License-Identifier: GPL-3.0-or-later
// Wraps a drive whose device may hang (a scratched disc, an image on a dead server): the calls that
// access the device run on a separate thread, and the caller waits for each with a time limit. The
// reads of a loaded disc are not wrapped, so they can block their caller without a time limit.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/disc/disc.h"
#include "platform/linux/waiting/blocking_calls.h"
#include "platform/linux/waiting/services.h"

namespace sonarith::disc {

/// For the logic thread only.
class PatientDrive final : public Drive {
  public:
    /// The time limits of the calls.
    struct Patience {
        std::chrono::milliseconds load;  ///< for reading the table of a disc
        std::chrono::milliseconds other; ///< for tray commands
    };

    /// The longest waits for the two calls that are made each second: mediaPresent() and
    /// loadSoon(). Their sum and the time limit of DiscPlayer's destructor (5 ms) together are at
    /// most Waiting::plainMoment.
    static constexpr std::chrono::milliseconds mediumMoment{35};
    static constexpr std::chrono::milliseconds tableMoment{10};

    /// `hangingText` is the message for a drive that did not respond in time.
    PatientDrive(std::shared_ptr<Drive> drive, Patience patience, std::string hangingText,
                 waiting::Services services);

    [[nodiscard]] DriveKind kind() const override { return drive_->kind(); }
    [[nodiscard]] std::string name() const override { return drive_->name(); }
    /// Returns `hung` and no disc if there is no result in time. While an earlier load that timed
    /// out is still running, returns `hung` at once. The disc of that earlier load is dropped,
    /// because no caller waits for it any more.
    [[nodiscard]] Loaded load() override;
    /// Reads the table, and waits for tableMoment at most. If the table has not been read by then,
    /// the reading continues, and its result is returned by a later loadSoon(), or by a load() that
    /// begins while the table is being read.
    [[nodiscard]] std::optional<Loaded> loadSoon() override;
    /// Waits for mediumMoment at most. Returns the previous value if there is no result in time or
    /// another call is running. A late result is returned by later calls.
    [[nodiscard]] bool mediaPresent() override;
    /// openTray() and closeTray() may return before the drive has executed the command. Commands
    /// are queued and executed in order. A command for which the queue has no room is dropped.
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
    const std::shared_ptr<Known> known_; ///< shared with the calls on the other thread
    waiting::BlockingCalls calls_;
    Clock::time_point loadBegan_;
    bool loadTimedOut_ = false; ///< the last load has timed out
    bool hangingReported_ = false;
};

} // namespace sonarith::disc
