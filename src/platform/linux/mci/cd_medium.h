// SPDX-License-Identifier: GPL-3.0-or-later
// The disc in the chosen drive and its playing: read when it is needed, released when it is taken
// out or another drive is chosen, and watched while it plays. Commands are parsed in cd_device.h.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/linux/mci/devices.h"
#include "platform/linux/mci/disc_notices.h"

namespace sonarith::mci {

/// For the thread of the logic.
class CdMedium {
  public:
    /// How long a disc is read for what is to be heard next before the user is told: a place that
    /// is damaged is tried for 8 seconds at most (disc/read_effort.h).
    static constexpr std::chrono::seconds longestRead{15};

    /// Reads the drive, and waits for it.
    CdMedium(std::shared_ptr<disc::Drive> drive, const Devices& devices);
    ~CdMedium();
    CdMedium(const CdMedium&) = delete;
    CdMedium& operator=(const CdMedium&) = delete;

    /// The disc, read anew if there was none before, which may wait for the drive; a null pointer
    /// if there is none.
    [[nodiscard]] disc::Disc* disc();
    /// Whether a disc is there now and its table has been read. Waits for nothing: the table of a
    /// disc that was put in is read meanwhile, and the disc counts as present once that is done.
    /// False once if another drive has been chosen since.
    [[nodiscard]] bool present();
    /// A disc has been read, as far as is known.
    [[nodiscard]] bool loaded() const { return disc_ != nullptr; }

    /// Both false without a drive.
    [[nodiscard]] bool openTray();
    [[nodiscard]] bool closeTray();
    /// By openTray(), and no disc was found since.
    [[nodiscard]] bool trayOpened() const { return trayOpened_; }

    /// The mode and place of the disc; stopped at sector 0 while nothing has been played of it.
    [[nodiscard]] disc::PlayerMode mode() const;
    [[nodiscard]] std::int64_t positionInFrames() const;
    /// Where the playing that was begun last is to end; 0 if none was.
    [[nodiscard]] std::int64_t playEnd() const { return playEnd_; }

    // Only with a disc loaded.
    void play(std::int64_t sector, std::int64_t endSector);
    void seek(std::int64_t sector);
    // Nothing if nothing has been played.
    void pause();
    void resume();
    void stop();

    /// Tells the user of a disc that is not read, or is gone, while it plays.
    void watch();
    /// What was lost of the sound that has been played since playing began, or since this was asked
    /// before; by track.
    [[nodiscard]] std::vector<TrackLoss> takeLosses();

  private:
    void take(disc::Loaded loaded);
    void release();
    bool followChoice();
    void sayThatItVanished();
    /// Made when it is first needed: reading a table alone must not set the drive to reading sound.
    [[nodiscard]] Transport& transport();

    const std::function<std::shared_ptr<disc::Drive>()> chosenDrive_;
    const std::function<std::unique_ptr<Transport>(std::shared_ptr<disc::Disc>)> makeTransport_;
    Notices& notices_;
    std::shared_ptr<disc::Drive> drive_; ///< empty: the machine has none any more
    std::shared_ptr<disc::Disc> disc_;
    std::unique_ptr<Transport> transport_;
    std::int64_t playedFrom_ = 0; ///< the sector from which losses have not been taken
    std::int64_t playEnd_ = 0;
    int failedLoads_ = 0; ///< since the drive was last seen empty
    bool trayOpened_ = false;
    bool saidThatItStandsStill_ = false; ///< of this transport
    bool saidThatItVanished_ = false;    ///< likewise
};

} // namespace sonarith::mci
