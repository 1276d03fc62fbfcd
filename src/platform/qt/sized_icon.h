// SPDX-License-Identifier: GPL-3.0-or-later
// An icon that is drawn at any size and reports a list of sizes: the desktop's panels query that
// list, and would otherwise receive two sizes to scale.
#pragma once

#include <QIcon>

namespace sonarith {

/// Returns `icon` with the sizes at which panels draw icons.
[[nodiscard]] QIcon withPanelSizes(const QIcon& icon);

} // namespace sonarith
