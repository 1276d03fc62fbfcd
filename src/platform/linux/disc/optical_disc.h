// SPDX-License-Identifier: GPL-3.0-or-later
// The disc in an optical drive: maps the disc's time line (disc.h) to the drive's sectors, bounds
// the effort for damaged sectors and counts damaged sectors. AudioSectors reads the sectors from
// the drive.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "platform/linux/disc/damage_record.h"
#include "platform/linux/disc/disc.h"
#include "platform/linux/disc/optical_layout.h"
#include "platform/linux/disc/read_effort.h"

namespace sonarith::disc {

enum class SectorOutcome {
    ok,
    repaired, ///< read completely, but not at the first attempt
    guessed,  ///< the best guess was delivered
    silent,   ///< nothing could be read; silence was delivered
    gone,     ///< the medium or the drive has been removed
};

/// Reads the sound of a disc sector by sector. Sector numbers are those of the drive.
class AudioSectors {
  public:
    virtual ~AudioSectors() = default;
    /// Makes `first` the next sector; sectors from `end` on are never requested from the drive.
    virtual void seek(std::int64_t first, std::int64_t end) = 0;
    /// Fills `out` (framesPerSector frames) with the next sector and advances by one. Precondition:
    /// `plan.effort` is not `none`. Once an attempt has failed and the time limit in `plan` has
    /// passed, at most one more attempt begins. After a stop request, no further command is sent to
    /// the drive, and `out` is unspecified.
    [[nodiscard]] virtual SectorOutcome
    next(ReadEffort::Plan plan, std::span<sound::StereoFrame> out, const std::stop_token& stop) = 0;
};

class OpticalDisc : public Disc {
  public:
    /// Returns the time of any monotonic clock.
    using Clock = std::function<ReadEffort::Duration()>;

    /// `damage` records how each sector is delivered. It may already have entries, from an earlier
    /// load of the same disc.
    OpticalDisc(OpticalLayout layout, std::unique_ptr<AudioSectors> sectors, Clock clock,
                std::shared_ptr<DamageRecord> damage = std::make_shared<DamageRecord>());

    [[nodiscard]] const Table& table() const override { return layout_.table(); }
    [[nodiscard]] std::string remark() const override;
    [[nodiscard]] Damage damageIn(std::int64_t first, std::int64_t end) const override;

  private:
    [[nodiscard]] ReadOutcome readSectors(std::int64_t first, std::span<sound::StereoFrame> out,
                                          const std::stop_token& stop) override;
    [[nodiscard]] ReadOutcome readStretch(const Stretch& stretch, std::span<sound::StereoFrame> out,
                                          const std::stop_token& stop);

    const OpticalLayout layout_;
    const std::unique_ptr<AudioSectors> sectors_;
    const Clock clock_;
    ReadEffort effort_;
    /// Time spent on sectors with errors, repaired or not, in the current read().
    ReadEffort::Duration repairTime_{0};
    std::optional<std::int64_t>
        next_; ///< the sector that sectors_ delivers next, in the drive's numbering
    bool gone_ = false;
    const std::shared_ptr<DamageRecord> damage_; ///< also read on the logic thread
};

} // namespace sonarith::disc
