// SPDX-License-Identifier: GPL-3.0-or-later
// The older of the two ways to an icon in the desktop's panel: the panel owns a selection of the X
// server and embeds the programs' windows (freedesktop.org, System Tray Protocol 0.4). Only whether
// there is such a panel; Qt does the embedding.
#pragma once

namespace sonarith {

/// Asks the X server, which takes as long as any window's request to it. false on other displays.
[[nodiscard]] bool embeddingTrayPresent();

} // namespace sonarith
