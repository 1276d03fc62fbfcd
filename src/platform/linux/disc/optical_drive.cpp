// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/optical_drive.h"

#include <cerrno>
#include <chrono>
#include <optional>
#include <utility>

#include "platform/linux/disc/cdio_handle.h"
#include "platform/linux/disc/optical_disc.h"
#include "platform/linux/disc/paranoia_sectors.h"

namespace sonarith::disc {

namespace {

/// The table as the drive tells it now; handles remember the table that they were opened with.
RawToc currentTocOf(const std::string& device) {
    const CdioHandle cdio = openCdio(device);
    return cdio ? rawTocOf(cdio.get()) : RawToc{};
}

/// Whether the disc whose table is `toc` has left the drive. A "cannot tell" is no.
bool hasLeft(const std::string& device, CdIo_t* cdio, const RawToc& toc) {
    const DriveState state = statusOf(device).state;
    if (state == DriveState::empty || state == DriveState::unreachable)
        return true;
    // Some drives claim a change at each question, so the table has the last word.
    return cdio_get_media_changed(cdio) > 0 && currentTocOf(device) != toc;
}

std::shared_ptr<Disc> makeDisc(const std::string& device, CdioHandle cdio, RawToc toc,
                               OpticalLayout layout) {
    CdIo_t* const raw = cdio.get(); // owned by the sectors below, as are both functions
    // Asked once, since the answer tells of a change since the question before.
    (void)cdio_get_media_changed(raw);
    auto command = [raw](std::int64_t first, std::int64_t count, std::byte* out) {
        return cdio_read_audio_sectors(raw, out, static_cast<lsn_t>(first),
                                       static_cast<std::uint32_t>(count)) == DRIVER_OP_SUCCESS;
    };
    auto gone = [device, raw, toc = std::move(toc)] {
        return hasLeft(device, raw, toc);
    };
    return std::make_shared<OpticalDisc>(
        std::move(layout),
        std::make_unique<ParanoiaSectors>(std::move(cdio), std::move(command), std::move(gone)),
        [] { return std::chrono::steady_clock::now().time_since_epoch(); });
}

} // namespace

OpticalDrive::OpticalDrive(std::string device) : device_(std::move(device)) {}

Loaded OpticalDrive::load() {
    const DriveStatus status = statusOf(device_);
    if (status.state == DriveState::unreachable)
        return {nullptr, problemOf(device_, status.error)};
    if (status.state == DriveState::empty || status.state == DriveState::notReady)
        return {};
    CdioHandle cdio = openCdio(device_);
    if (!cdio)
        return {nullptr, problemOf(device_, EIO)};
    RawToc toc = rawTocOf(cdio.get());
    std::optional<OpticalLayout> layout = OpticalLayout::of(toc);
    if (!layout)
        return status.state == DriveState::unknown
                   ? Loaded{}
                   : Loaded{nullptr, "The drive " + device_ +
                                         " cannot read the table of contents of its disc."};
    return {makeDisc(device_, std::move(cdio), std::move(toc), *std::move(layout)), {}};
}

bool OpticalDrive::mediaPresent() {
    const DriveState state = statusOf(device_).state;
    if (state != DriveState::unknown)
        return state == DriveState::loaded;
    return OpticalLayout::of(currentTocOf(device_)).has_value();
}

void OpticalDrive::openTray() {
    if (statusOf(device_).state != DriveState::unreachable)
        (void)cdio_eject_media_drive(device_.c_str());
}

void OpticalDrive::closeTray() {
    if (statusOf(device_).state != DriveState::unreachable)
        (void)cdio_close_tray(device_.c_str(), nullptr);
}

} // namespace sonarith::disc
