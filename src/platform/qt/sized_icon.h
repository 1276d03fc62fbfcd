// SPDX-License-Identifier: GPL-3.0-or-later
// An icon that can be drawn at any size and that reports a list of sizes. Over D-Bus, Qt sends the
// icon to the desktop's panel at each of these sizes. Without the list, Qt would send only two
// sizes, and the panel would have to scale the icon.
#pragma once

#include <QIcon>

namespace sonarith {

/// Returns `icon` with the sizes at which panels draw icons.
[[nodiscard]] QIcon withPanelSizes(const QIcon& icon);

} // namespace sonarith
