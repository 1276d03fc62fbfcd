// SPDX-License-Identifier: GPL-3.0-or-later
// Detects a desktop panel that uses the older of the two protocols for tray icons: the panel owns a
// selection of the X server and embeds small windows of the programs (freedesktop.org, System Tray
// Protocol 0.4). Qt implements the embedding itself.
#pragma once

namespace sonarith {

/// Whether a panel that embeds windows is running. Sends a request to the X server and waits for
/// its reply. Returns false if the display is not an X server.
[[nodiscard]] bool embeddingTrayPresent();

} // namespace sonarith
