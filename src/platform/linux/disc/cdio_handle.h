// SPDX-License-Identifier: GPL-3.0-or-later
// Ownership of libcdio's handle and safe opening: the library's own log handler ends the process.
// Also the table of contents as the library returns it, unchecked (optical_layout.h checks it).
// Once the log is silent, handles share no state: each may be used on any thread, by one thread at
// a time.
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

/// Opens a device node without closing an open tray, or the source of another named `driver` that
/// emulates a drive. Empty if it cannot be opened. A file that is no drive may open too.
[[nodiscard]] CdioHandle openCdio(const std::string& path, driver_id_t driver = DRIVER_DEVICE);

/// Both are ignored by a drive that refuses or has no tray.
void openTrayOf(const std::string& device);
void closeTrayOf(const std::string& device);

/// The disc's table; without tracks if there is no disc.
[[nodiscard]] RawToc rawTocOf(CdIo_t* cdio);

} // namespace sonarith::disc
