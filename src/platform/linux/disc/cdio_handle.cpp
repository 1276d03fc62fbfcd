// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/cdio_handle.h"

#include <mutex>

namespace sonarith::disc {

namespace {

// The time limit of one read command: longer than a drive's spin-up including the drive's own
// retries. The library's default of three minutes would delay the end of the program.
constexpr std::uint32_t readTimeoutMs = 20000;

void setUpLibrary() {
    static std::once_flag once;
    std::call_once(once, [] {
        // Disables the log: two threads that log at the same time end the process, whatever handler
        // is installed (measured with libcdio 2.1.0). Failures are reported by return values.
        cdio_loglevel_default.value() = static_cast<cdio_log_level_t>(CDIO_LOG_ASSERT + 1);
        cdio_init();
        mmc_read_timeout_ms.value() = readTimeoutMs;
    });
}

} // namespace

CdioHandle openCdio(const std::string& path, driver_id_t driver) {
    setUpLibrary();
    // Without an access mode the library opens devices with O_NONBLOCK (measured with libcdio
    // 2.1.0), so an open tray stays open.
    return CdioHandle(cdio_open(path.c_str(), driver));
}

void openTrayOf(const std::string& device) {
    setUpLibrary();
    (void)cdio_eject_media_drive(device.c_str());
}

void closeTrayOf(const std::string& device) {
    setUpLibrary();
    (void)cdio_close_tray(device.c_str(), nullptr);
}

RawToc rawTocOf(CdIo_t* cdio) {
    RawToc toc;
    const track_t first = cdio_get_first_track_num(cdio);
    const track_t count = cdio_get_num_tracks(cdio);
    if (first == CDIO_INVALID_TRACK || count == CDIO_INVALID_TRACK) {
        return toc;
    }
    for (int number = first; number < first + count && number <= maxTracks; ++number) {
        const auto track = static_cast<track_t>(number);
        const bool audio = cdio_get_track_format(cdio, track) == TRACK_FORMAT_AUDIO;
        toc.tracks.push_back(
            {audio ? TrackKind::audio : TrackKind::data, cdio_get_track_lsn(cdio, track)});
    }
    toc.leadOut = cdio_get_track_lsn(cdio, CDIO_CDROM_LEADOUT_TRACK);
    lsn_t lastSession = 0;
    if (cdio_get_last_session(cdio, &lastSession) == DRIVER_OP_SUCCESS) {
        toc.lastSessionStart = lastSession;
    }
    return toc;
}

} // namespace sonarith::disc
