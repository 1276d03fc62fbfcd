// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/optical_disc.h"

#include <algorithm>
#include <utility>

namespace sonarith::disc {

namespace {

Delivery deliveryOf(SectorOutcome outcome) {
    switch (outcome) {
    case SectorOutcome::guessed:
        return Delivery::guess;
    case SectorOutcome::silent:
        return Delivery::silence;
    default:
        return Delivery::whole;
    }
}

} // namespace

OpticalDisc::OpticalDisc(OpticalLayout layout, std::unique_ptr<AudioSectors> sectors, Clock clock,
                         std::shared_ptr<DamageRecord> damage)
    : layout_(std::move(layout)),
      sectors_(std::move(sectors)),
      clock_(std::move(clock)),
      damage_(std::move(damage)) {}

std::string OpticalDisc::remark() const {
    const std::int64_t damaged = damage_->sectors();
    if (damaged == 0) {
        return {};
    }
    return std::to_string(damaged) + (damaged == 1 ? " sector" : " sectors") +
           " of the disc could not be read without error; the drive's best guess, or silence, is "
           "used instead.";
}

Damage OpticalDisc::damageIn(std::int64_t first, std::int64_t end) const {
    Damage damage;
    while (first < end) {
        const Stretch stretch = layout_.stretchAt(first);
        if (stretch.sectors <= 0) {
            break;
        }
        const std::int64_t sectors = std::min(end - first, stretch.sectors);
        const Damage part = damage_->among(stretch.first, stretch.first + sectors);
        damage.silent += part.silent;
        damage.guessed += part.guessed;
        first += sectors;
    }
    return damage;
}

ReadOutcome OpticalDisc::readSectors(std::int64_t first, std::span<sound::StereoFrame> out,
                                     const std::stop_token& stop) {
    if (gone_) {
        return ReadOutcome::gone;
    }
    repairTime_ = {};
    while (!out.empty()) {
        const Stretch stretch = layout_.stretchAt(first);
        const auto wanted = static_cast<std::int64_t>(out.size()) / framesPerSector;
        const bool onTheLine = stretch.sectors > 0;
        const std::int64_t sectors = onTheLine ? std::min(wanted, stretch.sectors) : wanted;
        const auto frames = out.first(static_cast<std::size_t>(sectors) * framesPerSector);
        // Sectors of data tracks and sectors past the end are never requested from the drive: they
        // are delivered as silence.
        if (!onTheLine || stretch.kind == TrackKind::data) {
            std::ranges::fill(frames, sound::StereoFrame{});
        } else if (const auto outcome = readStretch(stretch, frames, stop);
                   outcome != ReadOutcome::ok) {
            gone_ = outcome == ReadOutcome::gone;
            return outcome;
        }
        first += sectors;
        out = out.subspan(frames.size());
    }
    effort_.finish(repairTime_);
    return ReadOutcome::ok;
}

ReadOutcome OpticalDisc::readStretch(const Stretch& stretch, std::span<sound::StereoFrame> out,
                                     const std::stop_token& stop) {
    std::int64_t sector = stretch.first;
    for (; !out.empty(); out = out.subspan(framesPerSector), ++sector) {
        if (stop.stop_requested()) {
            return ReadOutcome::interrupted;
        }
        const auto frames = out.first(framesPerSector);
        const ReadEffort::Plan plan = effort_.plan(repairTime_);
        if (plan.effort == Effort::none) {
            std::ranges::fill(frames, sound::StereoFrame{});
            damage_->note(sector, Delivery::silence);
            continue;
        }
        if (next_ != sector) {
            sectors_->seek(sector, stretch.first + stretch.sectors);
        }
        next_ = sector + 1;
        const ReadEffort::Duration begin = clock_();
        const SectorOutcome outcome = sectors_->next(plan, frames, stop);
        if (outcome == SectorOutcome::gone) {
            return ReadOutcome::gone;
        }
        if (stop.stop_requested()) {
            return ReadOutcome::interrupted;
        }
        // Only sectors with errors use up the time for repairs (see ReadEffort): a drive that spins
        // up is slow, but reads without errors.
        if (outcome != SectorOutcome::ok) {
            repairTime_ += clock_() - begin;
        }
        damage_->note(sector, deliveryOf(outcome));
    }
    return ReadOutcome::ok;
}

} // namespace sonarith::disc
