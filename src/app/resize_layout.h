// SPDX-License-Identifier: GPL-3.0-or-later
// Divides the main window's area: the tree fills the space between the visible bars. Only the tree
// and the hand grip are placed; the view keeps the bars at the edges of the window.
#pragma once

#include "forms/form1.h"

namespace sonarith {

struct BarState {
    Twips height = {};
    bool visible = false;
};

/// The current sizes, in twips, and which bars are visible.
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

/// The tree's height is 0 if the bars leave no space for the tree, and its width is 0 if the grip
/// strip leaves none.
[[nodiscard]] LayoutPlan planLayout(const LayoutSnapshot& window);

/// Plans the layout for the current state of the window, and applies it.
void runResizeLayout(Form1& form);

} // namespace sonarith
