// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/node_level.h"

namespace sonarith {

int NodeLevel(const NodeRef& node) {
    if (!node || node->key().empty()) {
        return 0;
    }
    switch (node->key().front()) {
    case 'f':
        return 1;
    case 'g':
        return 2;
    case 'p':
        return 3;
    default:
        return 0;
    }
}

} // namespace sonarith
