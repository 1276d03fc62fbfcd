// SPDX-License-Identifier: GPL-3.0-or-later
// Owns a handle of libcdio and reads a disc's table of contents through it. optical_layout.h checks
// that table. The library's log is disabled, because two threads that log at the same time end the
// process. Without the log, handles share no state: each may be used on any thread, by one thread
// at a time.
#pragma once

#include <memory>
#include <string>

#include "platform/linux/disc/optical_layout.h"
#include "platform/linux/late/cdio.h"

namespace sonarith::disc {

struct CdioCloser {
    void operator()(CdIo_t* cdio) const { cdio_destroy(cdio); }
};
using CdioHandle = std::unique_ptr<CdIo_t, CdioCloser>;

/// Opens the device node `path`; an open tray stays open. With another `driver` than the default,
/// opens the disc image `path`, from which that driver emulates a drive. Returns an empty handle if
/// `path` cannot be opened. Opening may also succeed for a file that is not a drive.
[[nodiscard]] CdioHandle openCdio(const std::string& path, driver_id_t driver = DRIVER_DEVICE);

/// openTrayOf() and closeTrayOf() have no effect on a drive that refuses the command or has no
/// tray.
void openTrayOf(const std::string& device);
void closeTrayOf(const std::string& device);

/// Reads the disc's table. The table has no tracks if there is no disc in the drive or if `cdio` is
/// not a drive.
[[nodiscard]] RawToc rawTocOf(CdIo_t* cdio);

} // namespace sonarith::disc
