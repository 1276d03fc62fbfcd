// SPDX-License-Identifier: GPL-3.0-or-later
// What all events of the work tree share. Nothing resets it between events unless an event says so.
#pragma once

#include <cstdint>
#include <string>

#include "platform/controls/tree_view.h"

namespace sonarith {

struct DragState {
    /// The node under the pointer at the last mouse press; may be empty.
    NodeRef DragNode;
    /// NodeLevel of DragNode, from the last time that a drag or the popup began.
    std::int32_t DragLevel = 0;
    /// The node that a drag passed over last, or the group that a move addressed last.
    NodeRef DropTarget;
    /// Tested before a drag starts. Nothing sets it.
    bool InDrag = false;
    /// Tested at a mouse press. Only ever set empty.
    std::string LabelEditGuard;
};

} // namespace sonarith
