// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the sound of a disc with libcdio's paranoia reader, which reads sectors repeatedly and
// compares the results. This class limits the sectors and the size of each command that it sends to
// the drive; cdio_handle.cpp limits the command's duration. Sector numbers are those of the drive;
// optical_disc.h maps the disc's time line to them.
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <set>

#include "platform/linux/disc/cdio_handle.h"
#include "platform/linux/disc/optical_disc.h"
#include "platform/linux/disc/sector_commands.h"

namespace sonarith::disc {

class ParanoiaSectors : public AudioSectors {
  public:
    /// `command` reads sectors from the drive. `gone` is called after a failed command and returns
    /// whether the medium has been removed.
    ParanoiaSectors(CdioHandle cdio, SectorCommands::Command command, std::function<bool()> gone);
    ~ParanoiaSectors() override;
    ParanoiaSectors(const ParanoiaSectors&) = delete;
    ParanoiaSectors& operator=(const ParanoiaSectors&) = delete;

    void seek(std::int64_t first, std::int64_t end) override;
    [[nodiscard]] SectorOutcome next(ReadEffort::Plan plan, std::span<sound::StereoFrame> out,
                                     const std::stop_token& stop) override;

  private:
    using Clock = std::chrono::steady_clock;

    void openReader();
    void makeParanoia();
    void position();
    /// Whether no further command may be sent to the drive.
    [[nodiscard]] bool isOver() const { return gone_ || stop_.stop_requested(); }
    [[nodiscard]] bool command(std::int64_t first, std::int64_t count, std::byte* out);
    [[nodiscard]] SectorOutcome readOnce(std::span<sound::StereoFrame> out);
    [[nodiscard]] SectorOutcome attemptOnce(std::span<sound::StereoFrame> out);
    [[nodiscard]] SectorOutcome repair(std::span<sound::StereoFrame> out);
    [[nodiscard]] std::int64_t readForRepair(std::int64_t first, std::int64_t count,
                                             std::byte* out);
    /// Reads sectors and discards them, to displace the sectors that the drive's cache contained
    /// before. The drive must then read the displaced sectors from the disc again.
    void readToForget(std::int64_t first, std::int64_t count);
    /// The library calls this function instead of its own read function. Reads only while repair()
    /// runs.
    static long readAudio(cdrom_drive_t* drive, void* out, lsn_t first, long count);

    CdioHandle cdio_;
    const SectorCommands::Command command_;
    const std::function<bool()> isGone_;
    SectorCommands commands_;
    cdrom_drive_t* drive_ = nullptr;       ///< null before the first read, or if opening failed
    cdrom_paranoia_t* paranoia_ = nullptr; ///< null if and only if drive_ is null
    bool triedToOpen_ = false;
    bool seekPending_ = false; ///< the paranoia reader is not yet at next_
    std::int64_t next_ = 0;
    std::int64_t end_ = 0;
    Clock::time_point deadline_;
    std::stop_token stop_; ///< of the current call of next()
    /// A command has failed in this call of next(), or earlier for the same sector.
    bool failed_ = false;
    std::map<std::int64_t, int> failures_; ///< failed reads of each sector, since the last seek
    std::set<std::int64_t> bad_; ///< unreadable sectors; the library's range excludes them
    std::int64_t limit_ = 0;     ///< end of the library's range: the next sector of bad_, or end_
    bool gone_ = false;
};

} // namespace sonarith::disc
