// SPDX-License-Identifier: GPL-3.0-or-later
// Detects the older of the two protocols for icons in the desktop's panel: the panel owns a
// selection of the X server and embeds the programs' windows (freedesktop.org, System Tray Protocol
// 0.4). Qt does the embedding.
#pragma once

namespace sonarith {

/// Whether such a panel runs. Sends a request to the X server and waits for its reply. Returns
/// false if the display is not an X server.
[[nodiscard]] bool embeddingTrayPresent();

} // namespace sonarith
