// SPDX-License-Identifier: GPL-3.0-or-later
// Detects the older of the two protocols for icons in the desktop's panel: the panel owns a
// selection of the X server and embeds the programs' windows (freedesktop.org, System Tray Protocol
// 0.4). Qt does the embedding.
#pragma once

namespace sonarith {

/// Asks the X server, which takes as long as any request of a window. Returns false on other
/// displays.
[[nodiscard]] bool embeddingTrayPresent();

} // namespace sonarith
