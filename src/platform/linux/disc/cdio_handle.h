// SPDX-License-Identifier: GPL-3.0-or-later
// Owns a handle of libcdio. Handles are opened with the library's log disabled, because its log
// handler ends the process. Also reads the table of contents, unchecked (optical_layout.h checks
// it). With the log disabled, handles share no state: each may be used on any thread, by one thread
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

/// Opens a device node without closing an open tray, or, with another `driver`, an image from which
/// that driver emulates a drive. Empty if `path` cannot be opened. Opening may also succeed for a
/// file that is not a drive.
[[nodiscard]] CdioHandle openCdio(const std::string& path, driver_id_t driver = DRIVER_DEVICE);

/// A drive that refuses the command or has no tray ignores it.
void openTrayOf(const std::string& device);
void closeTrayOf(const std::string& device);

/// The disc's table; without tracks if there is no disc.
[[nodiscard]] RawToc rawTocOf(CdIo_t* cdio);

} // namespace sonarith::disc
