// SPDX-License-Identifier: GPL-3.0-or-later
// An icon that is drawn at any size and says which sizes it has: the desktop's panels ask for
// those, and would be sent two sizes to scale otherwise.
#pragma once

#include <QIcon>

namespace sonarith {

/// `icon` as it is, with the sizes that panels draw icons at.
[[nodiscard]] QIcon withPanelSizes(const QIcon& icon);

} // namespace sonarith
