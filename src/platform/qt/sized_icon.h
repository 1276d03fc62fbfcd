// SPDX-License-Identifier: GPL-3.0-or-later
// An icon that can be drawn at any size and that reports a list of sizes. Panels of the desktop
// query that list; without the list they would receive the icon at only two sizes and would have to
// scale it.
#pragma once

#include <QIcon>

namespace sonarith {

/// Returns `icon` with the sizes at which panels draw icons.
[[nodiscard]] QIcon withPanelSizes(const QIcon& icon);

} // namespace sonarith
