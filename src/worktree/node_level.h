// SPDX-License-Identifier: GPL-3.0-or-later
// The level of a work tree's node, told by its key. Not its depth: a node that was moved elsewhere
// keeps its level.
#pragma once

#include "platform/controls/tree_view.h"

namespace sonarith {

/// 1 for a collection, 2 for a group, 3 for an item (a track or a file): keys that begin with "f",
/// "g" and "p". 0 for no node and for any other key.
[[nodiscard]] int NodeLevel(const NodeRef& node);

} // namespace sonarith
