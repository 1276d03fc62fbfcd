// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/resize_layout.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "support/virtual_event_loop.h"

namespace sonarith {

void PrintTo(const LayoutPlan& plan, std::ostream* out) {
    *out << "grip height " << plan.gripHeight << ", tree top " << plan.treeTop << ", height "
         << plan.treeHeight << ", width " << plan.treeWidth;
}

namespace {

LayoutSnapshot windowWith(bool tool, bool cd, bool activity, bool status) {
    LayoutSnapshot window;
    window.innerWidth = 3990;
    window.innerHeight = 5490;
    window.toolBar = {600, tool};
    window.cdBar = {400, cd};
    window.activityBar = {700, activity};
    window.statusBar = {300, status};
    window.gripStripWidth = 285;
    window.gripStripHeight = 3890;
    return window;
}

struct LayoutCase {
    std::string name;
    LayoutSnapshot window;
    LayoutPlan plan;
};

TEST(ResizeLayout, GivesTheTreeWhatTheVisibleBarsLeave) {
    const LayoutCase cases[] = {
        {"as at start", windowWith(true, false, true, true), {3890, 600, 3890, 3705}},
        {"all bars", windowWith(true, true, true, true), {3890, 1000, 3490, 3705}},
        {"no bars", windowWith(false, false, false, false), {3890, 0, 5490, 3705}},
        {"CD bar alone", windowWith(false, true, false, false), {3890, 400, 5090, 3705}},
        {"bottom bars alone", windowWith(false, false, true, true), {3890, 0, 4490, 3705}},
        {"status bar alone", windowWith(false, false, false, true), {3890, 0, 5190, 3705}},
    };
    for (const LayoutCase& c : cases) {
        EXPECT_EQ(planLayout(c.window), c.plan) << c.name;
    }
}

TEST(ResizeLayout, LeavesTheTreeNothingInAWindowSmallerThanItsBars) {
    LayoutSnapshot window = windowWith(true, true, true, true);
    window.innerWidth = 100;
    window.innerHeight = 1500;
    EXPECT_EQ(planLayout(window), (LayoutPlan{3890, 1000, 0, 0}));
}

TEST(ResizeLayout, PlacesTreeAndGripImageAndNothingElse) {
    test::VirtualEventLoop loop;
    ProcessState state;
    Windows windows;
    Form1 form(loop, state, windows);
    form.setInnerSize(4000, 5000);
    form.Picture3.setHeight(600);
    form.Picture4.setHeight(400);
    form.Picture2.setHeight(700);
    form.Picture1.setHeight(300);
    form.Picture5.setHeight(3400);
    form.TreeView1.setLeft(290);
    runResizeLayout(form);
    EXPECT_EQ(form.Image3.height(), 3400);
    EXPECT_EQ(form.TreeView1.top(), 600);
    EXPECT_EQ(form.TreeView1.height(), 5000 - 600 - 700 - 300);
    EXPECT_EQ(form.TreeView1.width(), 4000 - 285);
    EXPECT_EQ(form.TreeView1.left(), 290);
    EXPECT_EQ(form.Picture5.width(), 285);
    EXPECT_EQ(form.Picture3.height(), 600);
}

} // namespace
} // namespace sonarith
