// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/resize_layout.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "support/virtual_event_loop.h"

namespace sonarith {

void PrintTo(const LayoutPlan& plan, std::ostream* out) {
    *out << "in twips: grip height " << plan.gripHeight.count() << ", tree top "
         << plan.treeTop.count() << ", tree height " << plan.treeHeight.count() << ", tree width "
         << plan.treeWidth.count();
}

namespace {

LayoutSnapshot windowWith(bool tool, bool cd, bool activity, bool status) {
    LayoutSnapshot window;
    window.innerWidth = 3990_twips;
    window.innerHeight = 5490_twips;
    window.toolBar = {600_twips, tool};
    window.cdBar = {400_twips, cd};
    window.activityBar = {700_twips, activity};
    window.statusBar = {300_twips, status};
    window.gripStripWidth = 285_twips;
    window.gripStripHeight = 3890_twips;
    return window;
}

struct LayoutCase {
    std::string name;
    LayoutSnapshot window;
    LayoutPlan plan;
};

TEST(ResizeLayout, GivesTheTreeTheSpaceBetweenTheVisibleBars) {
    const LayoutCase cases[] = {
        {"as at start",
         windowWith(true, false, true, true),
         {3890_twips, 600_twips, 3890_twips, 3705_twips}},
        {"all bars",
         windowWith(true, true, true, true),
         {3890_twips, 1000_twips, 3490_twips, 3705_twips}},
        {"no bars",
         windowWith(false, false, false, false),
         {3890_twips, 0_twips, 5490_twips, 3705_twips}},
        {"CD bar alone",
         windowWith(false, true, false, false),
         {3890_twips, 400_twips, 5090_twips, 3705_twips}},
        {"bottom bars alone",
         windowWith(false, false, true, true),
         {3890_twips, 0_twips, 4490_twips, 3705_twips}},
        {"status bar alone",
         windowWith(false, false, false, true),
         {3890_twips, 0_twips, 5190_twips, 3705_twips}},
    };
    for (const LayoutCase& c : cases) {
        EXPECT_EQ(planLayout(c.window), c.plan) << c.name;
    }
}

TEST(ResizeLayout, GivesTheTreeNoSpaceInAWindowSmallerThanItsBars) {
    LayoutSnapshot window = windowWith(true, true, true, true);
    window.innerWidth = 100_twips;
    window.innerHeight = 1500_twips;
    EXPECT_EQ(planLayout(window), (LayoutPlan{3890_twips, 1000_twips, 0_twips, 0_twips}));
}

TEST(ResizeLayout, PlacesOnlyTheTreeAndTheHandGrip) {
    test::VirtualEventLoop loop;
    ProcessState state;
    Form1 form(loop, state, {});
    form.setInnerSize(4000_twips, 5000_twips);
    form.Picture3.setHeight(600_twips);
    form.Picture4.setHeight(400_twips);
    form.Picture2.setHeight(700_twips);
    form.Picture1.setHeight(300_twips);
    form.Picture5.setHeight(3400_twips);
    form.TreeView1.setLeft(290_twips);
    runResizeLayout(form);
    EXPECT_EQ(form.Image3.height(), 3400_twips);
    EXPECT_EQ(form.TreeView1.top(), 600_twips);
    EXPECT_EQ(form.TreeView1.height(), 5000_twips - 600_twips - 700_twips - 300_twips);
    EXPECT_EQ(form.TreeView1.width(), 4000_twips - 285_twips);
    EXPECT_EQ(form.TreeView1.left(), 290_twips);
    EXPECT_EQ(form.Picture5.width(), 285_twips);
    EXPECT_EQ(form.Picture3.height(), 600_twips);
}

} // namespace
} // namespace sonarith
