// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/cd_medium.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace sonarith::mci {
namespace {

using disc::PlayerMode;

/// The number of tries to load an unreadable disc; after them the drive counts as empty until the
/// disc is removed. A drive may need a second try while it spins up. The number is limited, because
/// each try takes as long as the drive needs, and the CD player queries the drive once a second.
constexpr int maxLoadTries = 3;

} // namespace

CdMedium::CdMedium(std::shared_ptr<disc::Drive> drive, const Devices& devices)
    : chosenDrive_(devices.drive),
      makeTransport_(devices.transport),
      notices_(*devices.notices),
      drive_(std::move(drive)) {
    take(drive_->load());
}

CdMedium::~CdMedium() {
    release();
}

disc::Disc* CdMedium::disc() {
    if (disc_) {
        return disc_.get();
    }
    followChoice();
    if (!drive_ || !drive_->mediaPresent()) {
        failedLoads_ = 0;
    } else if (failedLoads_ < maxLoadTries) {
        take(drive_->load());
    }
    return disc_.get();
}

bool CdMedium::present() {
    if (followChoice() || !drive_) {
        removalUnseen_ = false;
        return false;
    }
    const bool inDrive = drive_->mediaPresent();
    // If the disc was exchanged between two queries, the drive is never seen empty. Then only
    // Transport::gone() shows the exchange: the old disc can no longer be read.
    if (!inDrive || (transport_ && transport_->gone())) {
        if (mode() == PlayerMode::playing) {
            reportVanished();
        }
        release();
    }
    if (std::exchange(removalUnseen_, false)) {
        return false;
    }
    if (inDrive && !disc_ && failedLoads_ < maxLoadTries) {
        if (std::optional<disc::Loaded> loaded = drive_->loadSoon()) {
            take(std::move(*loaded));
        }
    }
    return disc_ != nullptr;
}

void CdMedium::take(disc::Loaded loaded) {
    disc_ = std::move(loaded.disc);
    if (disc_ && disc_->table().tracks.empty()) {
        disc_.reset(); // without a track there is nothing to play
    }
    if (disc_) {
        trayOpened_ = false;
    } else {
        ++failedLoads_;
    }
}

void CdMedium::release() {
    if (interruptionReported_) {
        notices_.settled(drive_->name(), "");
    }
    interruptionReported_ = false;
    vanishedReported_ = false;
    transport_.reset();
    playEnd_ = 0;
    removalUnseen_ = removalUnseen_ || disc_;
    disc_.reset();
    failedLoads_ = 0;
}

/// Switches to the currently chosen drive; returns whether it differs from the previous one.
bool CdMedium::followChoice() {
    std::shared_ptr<disc::Drive> chosen = chosenDrive_();
    if (chosen == drive_) {
        return false;
    }
    release();
    trayOpened_ = false;
    drive_ = std::move(chosen);
    return true;
}

bool CdMedium::openTray() {
    followChoice();
    if (!drive_) {
        return false;
    }
    release();
    drive_->openTray();
    trayOpened_ = true;
    return true;
}

bool CdMedium::closeTray() {
    followChoice();
    if (!drive_) {
        return false;
    }
    drive_->closeTray();
    trayOpened_ = false;
    return true;
}

PlayerMode CdMedium::mode() const {
    return transport_ ? transport_->mode() : PlayerMode::stopped;
}

std::int64_t CdMedium::positionInFrames() const {
    return transport_ ? transport_->positionInFrames() : 0;
}

Transport& CdMedium::transport() {
    if (!transport_) {
        transport_ = makeTransport_(disc_);
    }
    return *transport_;
}

Status CdMedium::play(std::int64_t sector, std::int64_t endSector) {
    Status played = transport().play(sector, endSector);
    if (played.ok()) {
        playedFrom_ = sector;
        playEnd_ = endSector;
    }
    return played;
}

void CdMedium::seek(std::int64_t sector) {
    transport().seek(sector);
    playedFrom_ = sector;
}

void CdMedium::pause() {
    if (transport_) {
        transport_->pause();
    }
}

void CdMedium::resume() {
    if (transport_) {
        transport_->resume();
    }
}

void CdMedium::stop() {
    if (transport_) {
        transport_->stop();
    }
}

void CdMedium::watch() {
    if (!transport_) {
        return;
    }
    const bool hangs = transport_->readingFor() >= longestRead;
    if (hangs && !interruptionReported_ && mode() == PlayerMode::playing) {
        notices_.report(playingIsInterrupted(drive_->name(), longestRead));
        interruptionReported_ = true;
    } else if (!hangs && interruptionReported_) {
        notices_.settled(drive_->name(), "Responding again: " + drive_->name() + ".");
        interruptionReported_ = false;
    }
    if (transport_->gone()) {
        reportVanished();
    }
}

/// Reports a vanished disc only if it is a disc image. A disc that is no longer in an optical drive
/// is not reported, because the user has removed it and knows that.
void CdMedium::reportVanished() {
    if (drive_->kind() == disc::DriveKind::image && !std::exchange(vanishedReported_, true)) {
        notices_.report(discHasVanished(drive_->name()));
    }
}

std::vector<TrackLoss> CdMedium::takeLosses() {
    std::vector<TrackLoss> losses;
    if (!disc_) {
        return losses;
    }
    const disc::Table& table = disc_->table();
    const std::int64_t end =
        (positionInFrames() + disc::framesPerSector - 1) / disc::framesPerSector;
    for (int track = 1; track <= static_cast<int>(table.tracks.size()); ++track) {
        const std::int64_t from = std::max(playedFrom_, table.start(track));
        const std::int64_t to = std::min(end, table.start(track + 1));
        const disc::Damage damage = from < to ? disc_->damageIn(from, to) : disc::Damage{};
        if (damage != disc::Damage{}) {
            losses.push_back({track, damage});
        }
    }
    playedFrom_ = std::max(playedFrom_, end);
    return losses;
}

} // namespace sonarith::mci
