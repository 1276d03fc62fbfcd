// SPDX-License-Identifier: GPL-3.0-or-later
// Derives the level of a work tree's node from the node's key. The level is not the depth: a node
// that was moved elsewhere keeps its level.
#pragma once

#include "platform/controls/tree_view.h"

namespace sonarith {

/// Level of a group: it contains items and belongs to a collection.
inline constexpr int groupLevel = 2;
/// Level of a track or a file.
inline constexpr int itemLevel = 3;

/// For a key that begins with "f" (a collection): 1; with "g": `groupLevel`; with "p": `itemLevel`.
/// 0 for any other key and for a null `node`.
[[nodiscard]] int NodeLevel(const NodeRef& node);

} // namespace sonarith
