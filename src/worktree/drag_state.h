// SPDX-License-Identifier: GPL-3.0-or-later
// Holds the state that the handlers of the work tree's events share. A value stays until a handler
// changes it.
#pragma once

#include <cstdint>
#include <string>

#include "platform/controls/tree_view.h"

namespace sonarith {

struct DragState {
    /// The node under the pointer at the last mouse press, or the node of a file that was renamed
    /// since then. Empty if the pointer was over no node, and after a drop.
    NodeRef DragNode;
    /// The NodeLevel of DragNode at the last mouse move with only the left button down, or at the
    /// last opening of the popup. 0 after a drop.
    std::int32_t DragLevel = 0;
    /// A drag event sets DropTarget to the node under the pointer (empty: no node). If this node is
    /// an item that accepts DragNode, the event sets DropTarget to the item's parent. The move of a
    /// node to another group sets DropTarget to that group. If a file has no group to move to, the
    /// move empties DropTarget.
    NodeRef DropTarget;
    /// Tested before a drag starts. Nothing sets it.
    bool InDrag = false;
    /// Tested at a mouse press. Only ever set to an empty text.
    std::string LabelEditGuard;
};

} // namespace sonarith
