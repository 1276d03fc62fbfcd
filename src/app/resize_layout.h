// SPDX-License-Identifier: GPL-3.0-or-later
// How the main window divides its surface: the tree takes what the visible bars leave. Only the
// tree and the grip image are placed; the bars hold to their edges by themselves.
#pragma once

#include "forms/form1.h"

namespace sonarith {

struct BarState {
    Twips height = {};
    bool visible = false;
};

/// Sizes and visibilities as they stand, in twips.
struct LayoutSnapshot {
    Twips innerWidth = {};
    Twips innerHeight = {};
    BarState toolBar;
    BarState cdBar;
    BarState activityBar;
    BarState statusBar;
    Twips gripStripWidth = {};
    Twips gripStripHeight = {};
};

/// What the layout sets, in twips. The tree's left edge is never among it.
struct LayoutPlan {
    Twips gripHeight = {};
    Twips treeTop = {};
    Twips treeHeight = {};
    Twips treeWidth = {};

    bool operator==(const LayoutPlan&) const = default;
};

/// A window smaller than its bars leaves the tree a size of 0.
[[nodiscard]] LayoutPlan planLayout(const LayoutSnapshot& window);

/// Plans the layout for the window as it stands, and carries it out.
void runResizeLayout(Form1& form);

} // namespace sonarith
