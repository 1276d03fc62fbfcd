// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/optical_drive.h"

#include <cerrno>
#include <optional>
#include <thread>
#include <utility>

#include "platform/linux/disc/optical_disc.h"
#include "platform/linux/disc/paranoia_sectors.h"

namespace sonarith::disc {

namespace {

// The interval of the queries while a disc spins up: short enough for no noticeable delay, long
// enough not to disturb a busy drive.
constexpr std::chrono::milliseconds spinUpPoll{250};

/// The table that the drive reports now. Opens a new handle, because a handle caches the table.
RawToc currentTocOf(const OpticalAccess& access, const std::string& device) {
    const CdioHandle cdio = access.open(device);
    return cdio ? access.table(cdio.get()) : RawToc{};
}

/// Whether the disc whose table is `toc` was removed. A state that does not decide this (loaded,
/// notReady, unknown) counts as removal only if the drive also reports a change and its current
/// table differs from `toc`.
bool wasRemoved(const OpticalAccess& access, const std::string& device, CdIo_t* cdio,
                const RawToc& toc) {
    const DriveState state = access.status(device).state;
    if (state == DriveState::empty || state == DriveState::trayOpen ||
        state == DriveState::unreachable) {
        return true;
    }
    // Some drives report a change at each query, so the comparison of the tables decides.
    return access.mediaChanged(cdio) > 0 && currentTocOf(access, device) != toc;
}

std::shared_ptr<Disc> makeDisc(const OpticalAccess& access, const std::string& device,
                               CdioHandle cdio, const RawToc& toc, OpticalLayout layout,
                               std::shared_ptr<DamageRecord> damage) {
    // Stays valid in both lambdas: ParanoiaSectors below owns the handle and the lambdas.
    CdIo_t* const raw = cdio.get();
    // Discards the changes up to now: each call reports the changes since the previous call.
    (void)access.mediaChanged(raw);
    auto command = [raw, read = access.read](std::int64_t first, std::int64_t count,
                                             std::byte* out) {
        return read(raw, first, count, out);
    };
    auto gone = [access, device, raw, toc] {
        return wasRemoved(access, device, raw, toc);
    };
    return std::make_shared<OpticalDisc>(
        std::move(layout),
        std::make_unique<ParanoiaSectors>(std::move(cdio), std::move(command), std::move(gone)),
        [] { return std::chrono::steady_clock::now().time_since_epoch(); }, std::move(damage));
}

} // namespace

bool OpticalAccess::readAudioSectors(CdIo_t* cdio, std::int64_t first, std::int64_t count,
                                     std::byte* out) {
    return cdio_read_audio_sectors(cdio, out, static_cast<lsn_t>(first),
                                   static_cast<std::uint32_t>(count)) == DRIVER_OP_SUCCESS;
}

void OpticalAccess::pauseThread(std::chrono::milliseconds time) {
    std::this_thread::sleep_for(time);
}

OpticalDrive::OpticalDrive(std::string device, OpticalAccess access)
    : device_(std::move(device)), access_(std::move(access)) {}

DriveStatus OpticalDrive::settledStatus() const {
    DriveStatus status = access_.status(device_);
    for (std::chrono::milliseconds waited{0};
         status.state == DriveState::notReady && waited < longestSpinUp; waited += spinUpPoll) {
        access_.pause(spinUpPoll);
        status = access_.status(device_);
    }
    return status;
}

Loaded OpticalDrive::load() {
    const DriveStatus status = settledStatus();
    switch (status.state) {
    case DriveState::unreachable:
        return {nullptr, problemOf(device_, status.error)};
    case DriveState::notReady:
        return noDisc(DeviceProblem::busy,
                      "The drive " + device_ +
                          " is not ready: it is still trying to read its disc. Try again, or check "
                          "that the disc is clean and correctly inserted.");
    case DriveState::empty:
    case DriveState::trayOpen:
        // With an empty toc_, the next load starts a new damage record: that load may find another
        // disc, or the same disc after cleaning.
        toc_ = {};
        return noDisc(status.state == DriveState::empty ? DeviceProblem::noMedium
                                                        : DeviceProblem::trayOpen);
    case DriveState::loaded:
    case DriveState::unknown:
        break;
    }
    return loadTable(status.state);
}

Loaded OpticalDrive::loadTable(DriveState state) {
    CdioHandle cdio = access_.open(device_);
    if (!cdio) {
        return {nullptr, problemOf(device_, EIO)};
    }
    RawToc toc = access_.table(cdio.get());
    std::optional<OpticalLayout> layout = OpticalLayout::of(toc);
    if (!layout) {
        return state == DriveState::unknown
                   ? noDisc(DeviceProblem::noMedium)
                   : noDisc(DeviceProblem::unreadable,
                            "The drive " + device_ +
                                " cannot read the table of contents of its disc.");
    }
    if (toc != toc_) {
        damage_ = std::make_shared<DamageRecord>();
    }
    toc_ = std::move(toc);
    auto disc = makeDisc(access_, device_, std::move(cdio), toc_, *std::move(layout), damage_);
    disc_ = disc;
    return {std::move(disc), {}};
}

bool OpticalDrive::mediaPresent() {
    switch (access_.status(device_).state) {
    case DriveState::loaded:
        return true;
    case DriveState::notReady:
        return !disc_.expired(); // a disc that was already read is spinning up again
    case DriveState::unknown:
        return OpticalLayout::of(currentTocOf(access_, device_)).has_value();
    case DriveState::empty:
    case DriveState::trayOpen:
    case DriveState::unreachable:
        break;
    }
    return false;
}

void OpticalDrive::openTray() {
    if (access_.status(device_).state != DriveState::unreachable) {
        openTrayOf(device_);
    }
}

void OpticalDrive::closeTray() {
    if (access_.status(device_).state != DriveState::unreachable) {
        closeTrayOf(device_);
    }
}

} // namespace sonarith::disc
