// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/resize_layout.h"

#include <algorithm>

namespace sonarith {

namespace {

Twips taken(const BarState& a, const BarState& b) {
    return (a.visible ? a.height : 0_twips) + (b.visible ? b.height : 0_twips);
}

BarState stateOf(const PictureBox& bar) {
    return {bar.height(), bar.visible()};
}

} // namespace

LayoutPlan planLayout(const LayoutSnapshot& window) {
    LayoutPlan plan;
    plan.gripHeight = window.gripStripHeight;
    plan.treeTop = taken(window.toolBar, window.cdBar);
    plan.treeHeight = std::max(0_twips, window.innerHeight - plan.treeTop -
                                            taken(window.statusBar, window.activityBar));
    plan.treeWidth = std::max(0_twips, window.innerWidth - window.gripStripWidth);
    return plan;
}

void runResizeLayout(Form1& form) {
    LayoutSnapshot window;
    window.innerWidth = form.innerWidth();
    window.innerHeight = form.innerHeight();
    window.toolBar = stateOf(form.Picture3);
    window.cdBar = stateOf(form.Picture4);
    window.activityBar = stateOf(form.Picture2);
    window.statusBar = stateOf(form.Picture1);
    window.gripStripWidth = form.Picture5.width();
    window.gripStripHeight = form.Picture5.height();

    const LayoutPlan plan = planLayout(window);
    form.Image3.setHeight(plan.gripHeight);
    form.TreeView1.setTop(plan.treeTop);
    form.TreeView1.setHeight(plan.treeHeight);
    form.TreeView1.setWidth(plan.treeWidth);
}

} // namespace sonarith
