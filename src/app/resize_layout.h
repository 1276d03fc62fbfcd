// SPDX-License-Identifier: GPL-3.0-or-later
// Divides the main window's area: the tree fills the space between the visible bars. Only the tree
// and the grip image are placed; the view keeps the bars at their edges.
#pragma once

#include "forms/form1.h"

namespace sonarith {

struct BarState {
    Twips height = {};
    bool visible = false;
};

/// Current sizes and visibilities, in twips.
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

/// Results of the layout, in twips. The tree's left edge never changes.
struct LayoutPlan {
    Twips gripHeight = {};
    Twips treeTop = {};
    Twips treeHeight = {};
    Twips treeWidth = {};

    bool operator==(const LayoutPlan&) const = default;
};

/// If the window is smaller than its bars, the tree gets a size of 0.
[[nodiscard]] LayoutPlan planLayout(const LayoutSnapshot& window);

/// Plans the layout for the current state of the window, and applies it.
void runResizeLayout(Form1& form);

} // namespace sonarith
