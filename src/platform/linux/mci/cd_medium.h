// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the disc in the chosen drive when a command needs the disc, plays and monitors the disc,
// and releases it when the user removes it or chooses another drive. The commands are handled in
// cd_device.h.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/linux/mci/devices.h"
#include "platform/linux/mci/disc_notices.h"

namespace sonarith::mci {

/// For the logic thread.
class CdMedium {
  public:
    /// How long the reading of the next sound may take before the user is notified. Longer than 8
    /// seconds, the longest time that bad sectors can cost in one read (twice wholeBudget in
    /// disc/read_effort.h).
    static constexpr std::chrono::seconds longestRead{15};

    /// Loads the disc in `drive`. May wait for the drive.
    CdMedium(std::shared_ptr<disc::Drive> drive, const Devices& devices);
    ~CdMedium();
    CdMedium(const CdMedium&) = delete;
    CdMedium& operator=(const CdMedium&) = delete;

    /// The disc, or a null pointer if there is none. If no disc is loaded, reads the drive first
    /// and may wait for it.
    [[nodiscard]] disc::Disc* disc();
    /// Whether a disc is in the drive and its table has been read. Waits for the drive for at
    /// most about 45 ms (disc/patient_drive.h): the table of an inserted disc is read in the
    /// background.
    /// Returns false at the first call after a loaded disc was released (it was removed, or the
    /// tray was opened), and at a call that switches to a newly chosen drive. So the caller drops
    /// the previous disc before it sees the next one, however quickly the next disc is inserted.
    [[nodiscard]] bool present();
    /// Whether a disc has been read and not released since. Does not query the drive.
    [[nodiscard]] bool loaded() const { return disc_ != nullptr; }

    /// openTray() and closeTray() return false if the machine has no drive.
    [[nodiscard]] bool openTray();
    [[nodiscard]] bool closeTray();
    /// True from a call of openTray() until closeTray() is called, a disc is found or another drive
    /// is chosen.
    [[nodiscard]] bool trayOpened() const { return trayOpened_; }

    /// The mode and position of the disc; stopped at sector 0 before the first play() or seek().
    [[nodiscard]] disc::PlayerMode mode() const;
    [[nodiscard]] std::int64_t positionInFrames() const;
    /// The end sector of the most recent successful play() of the loaded disc; 0 if there was none.
    [[nodiscard]] std::int64_t playEnd() const { return playEnd_; }

    // Precondition of play() and seek(): a disc is loaded.
    [[nodiscard]] Status play(std::int64_t sector, std::int64_t endSector);
    void seek(std::int64_t sector);
    // pause(), resume() and stop() have no effect before the first play() or seek().
    void pause();
    void resume();
    void stop();

    /// Notifies the user of three events: the playing disc could not be read for `longestRead`, the
    /// disc can be read again, or the disc is an image and has vanished.
    void watch();
    /// Returns, for each damaged track, how many sectors were delivered as silence and how many as
    /// a guess, since playing began or since the previous call, whichever is later.
    [[nodiscard]] std::vector<TrackLoss> takeLosses();

  private:
    void take(disc::Loaded loaded);
    void release();
    bool followChoice();
    void reportVanished();
    /// Created on first use: only play() and seek() need a transport.
    [[nodiscard]] Transport& transport();

    const std::function<std::shared_ptr<disc::Drive>()> chosenDrive_;
    const std::function<std::unique_ptr<Transport>(std::shared_ptr<disc::Disc>)> makeTransport_;
    Notices& notices_;
    std::shared_ptr<disc::Drive> drive_; ///< null if the machine has no drive any more
    std::shared_ptr<disc::Disc> disc_;
    std::unique_ptr<Transport> transport_;
    std::int64_t playedFrom_ = 0; ///< the first sector whose losses were not yet taken
    std::int64_t playEnd_ = 0;
    int failedLoads_ = 0; ///< since the drive was last seen empty, or the last release()
    bool trayOpened_ = false;
    bool removalUnseen_ = false;        ///< a loaded disc was released since the last present()
    bool interruptionReported_ = false; ///< whether the interruption notice is shown
    bool vanishedReported_ = false;     ///< for the current transport_
};

} // namespace sonarith::mci
