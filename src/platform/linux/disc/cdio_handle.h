// SPDX-License-Identifier: GPL-3.0-or-later
// Ownership of libcdio's handle, made safe to open: the library's own log handler ends the process.
// Also the table as the library tells it. It judges nothing (optical_layout.h does). Once the log
// is silent, handles share nothing: each may be used on a thread of its own, but by one at a time.
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

/// Opens a device node, without pulling in an open tray, or what stands for a drive if another
/// `driver` is named. Empty if it cannot be opened. Something that is no drive may open too.
[[nodiscard]] CdioHandle openCdio(const std::string& path, driver_id_t driver = DRIVER_DEVICE);

/// Both are passed over by a drive that refuses or has no tray.
void openTrayOf(const std::string& device);
void closeTrayOf(const std::string& device);

/// The table of the disc; without tracks if there is none.
[[nodiscard]] RawToc rawTocOf(CdIo_t* cdio);

} // namespace sonarith::disc
