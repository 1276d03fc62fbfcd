// SPDX-License-Identifier: GPL-3.0-or-later
// The device type "cdaudio": runs the commands that query the disc in a drive and control its
// playback. CdMedium reads and plays the disc.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/linux/mci/cd_medium.h"
#include "platform/linux/mci/device.h"
#include "platform/linux/mci/devices.h"
#include "platform/linux/mci/time_format.h"

namespace sonarith::mci {

/// Commands and keywords: info (identity); status (for the disc: number of tracks, length,
/// position, current track, mode, media present, ready, time format; for "track n": length,
/// position, type); set (time format, door); play (from, to); pause; resume; stop; seek (to).
///
/// "status media present" does not wait until the table of an inserted disc has been read: until
/// then, it reports no medium. After the user has chosen another drive, the first query reports no
/// medium. Later queries report the medium of the other drive.
///
/// Errors in addition to those of parsing:
/// - deviceNotReady: no disc or no drive, or playing cannot be started;
/// - outOfRange: "from" is after "to", or the track does not exist;
/// - dataTrack: playing would begin in a data track;
/// - nonapplicableFunction: "resume" while the disc is stopped.
///
/// Playing ends at "to", at the end of the disc's time line (see disc.h), or where a data track
/// begins.
class CdDevice : public Device {
  public:
    /// Reads the drive. If it contains no disc, the device is not ready.
    CdDevice(std::shared_ptr<disc::Drive> drive, const Devices& devices);

    [[nodiscard]] Reply run(const Command& command) override;

    /// As CdMedium::takeLosses.
    [[nodiscard]] std::vector<TrackLoss> takeLosses() { return medium_.takeLosses(); }

  private:
    [[nodiscard]] Reply info(const Command& command);
    [[nodiscard]] Reply set(const Command& command);
    [[nodiscard]] Reply status(const Command& command);
    [[nodiscard]] Reply deviceStatus(std::string_view item);
    [[nodiscard]] Reply discStatus(std::string_view item, const disc::Table& table);
    [[nodiscard]] Reply trackStatus(std::string_view item, const std::string& number);
    [[nodiscard]] Reply play(const Command& command);
    [[nodiscard]] Reply resume();
    [[nodiscard]] Reply seek(const Command& command);

    [[nodiscard]] std::string_view mode() const;
    [[nodiscard]] std::int64_t currentSector() const;

    CdMedium medium_;
    TimeFormat format_ = TimeFormat::msf;
};

} // namespace sonarith::mci
