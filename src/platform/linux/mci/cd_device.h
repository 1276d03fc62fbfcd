// SPDX-License-Identifier: GPL-3.0-or-later
// The device type "cdaudio": the disc in a drive, its table, and its playing, by commands. How a
// disc is read or heard is not known here.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/linux/mci/device.h"
#include "platform/linux/mci/devices.h"
#include "platform/linux/mci/time_format.h"

namespace sonarith::mci {

/// Commands and keywords: info (identity); status (number of tracks, length, position, each with
/// or without track n, type track n, current track, mode, media present, ready, time format); set
/// (time format, door); play (from, to); pause; resume; stop; seek (to).
///
/// Errors beyond those of words and numbers: deviceNotReady without a disc, dataTrack where playing
/// would begin in data. Playing ends at "to", at the line's end, or where a data track begins.
class CdDevice : public Device {
  public:
    /// Reads the drive. A drive without a disc makes a device that is not ready.
    CdDevice(std::shared_ptr<disc::Drive> drive, const Devices& devices);

    [[nodiscard]] Reply run(const Command& command) override;

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

    /// The disc, read anew if there was none before; a null pointer if there is none.
    [[nodiscard]] disc::Disc* loadedDisc();
    void load();
    void release();
    [[nodiscard]] bool mediaPresent();
    [[nodiscard]] std::string_view mode();
    [[nodiscard]] std::int64_t currentSector();
    /// The transport of the loaded disc, made when it is first needed: reading a table alone must
    /// not set the drive to reading sound. Only with a disc loaded.
    [[nodiscard]] Transport& transport();

    std::shared_ptr<disc::Drive> drive_;
    std::function<std::unique_ptr<Transport>(std::shared_ptr<disc::Disc>)> makeTransport_;
    std::shared_ptr<disc::Disc> disc_;
    std::unique_ptr<Transport> transport_;
    std::int64_t playEnd_ = 0; ///< where the playing that was begun last is to end
    int failedLoads_ = 0;      ///< since the drive was last seen empty
    bool doorOpened_ = false;  ///< by a command, and no disc was found since
    TimeFormat format_ = TimeFormat::msf;
};

} // namespace sonarith::mci
