// SPDX-License-Identifier: GPL-3.0-or-later
// An optical drive of the machine: moves the tray, detects whether the drive contains a disc, and
// reads that disc's table. optical_disc.h and paranoia_sectors.h read the sound.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/linux/disc/cdio_handle.h"
#include "platform/linux/disc/damage_record.h"
#include "platform/linux/disc/disc.h"
#include "platform/linux/disc/drive_status.h"

namespace sonarith::disc {

/// The functions of the machine that an optical drive calls; tests replace them. A loaded disc
/// calls them on the thread that reads the disc.
struct OpticalAccess {
    std::function<DriveStatus(const std::string& device)> status = statusOf;
    std::function<CdioHandle(const std::string& device)> open = [](const std::string& device) {
        return openCdio(device);
    };
    std::function<RawToc(CdIo_t*)> table = rawTocOf;
    /// Whether the medium was changed since the previous call: 0 for no, positive for yes, negative
    /// if the drive cannot report it.
    std::function<int(CdIo_t*)> mediaChanged = [](CdIo_t* cdio) {
        return cdio_get_media_changed(cdio);
    };
    /// Sends one read command to the drive; see SectorCommands::Command.
    std::function<bool(CdIo_t*, std::int64_t first, std::int64_t count, std::byte* out)> read =
        readAudioSectors;
    std::function<void(std::chrono::milliseconds)> pause = pauseThread;

    static bool readAudioSectors(CdIo_t* cdio, std::int64_t first, std::int64_t count,
                                 std::byte* out);
    static void pauseThread(std::chrono::milliseconds time);
};

class OpticalDrive : public Drive {
  public:
    /// `device` is a device node; each call checks that it exists and is a drive.
    explicit OpticalDrive(std::string device, OpticalAccess access = {});

    [[nodiscard]] DriveKind kind() const override { return DriveKind::optical; }
    [[nodiscard]] std::string name() const override { return "the drive " + device_; }
    /// Waits at most `longestSpinUp` for a disc that spins up. A load that finds the last disc's
    /// table again continues that disc's record of damaged sectors. A load that finds the drive
    /// empty or its tray open ends the record.
    [[nodiscard]] Loaded load() override;
    [[nodiscard]] bool mediaPresent() override;
    /// openTray() and closeTray() report no failures. They have no effect on a drive that refuses
    /// the command or has no tray.
    void openTray() override;
    void closeTray() override;

    static constexpr std::chrono::milliseconds longestSpinUp{8000};

  private:
    [[nodiscard]] DriveStatus settledStatus() const;
    [[nodiscard]] Loaded loadTable(DriveState state);

    const std::string device_;
    const OpticalAccess access_;
    std::weak_ptr<Disc> disc_; ///< the most recently loaded disc
    RawToc toc_; ///< of disc_; cleared by a load if the drive reports that it is empty or open
    std::shared_ptr<DamageRecord> damage_ = std::make_shared<DamageRecord>(); ///< of disc_
};

} // namespace sonarith::disc
