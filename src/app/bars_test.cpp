// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/bars.h"

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "support/virtual_event_loop.h"

namespace sonarith {
namespace {

struct Window {
    test::VirtualEventLoop loop;
    ProcessState state;
    Form1 form{loop, state, {}};

    Window() {
        form.setInnerSize(4000_twips, 5000_twips);
        form.Picture3.setHeight(600_twips);
        form.Picture4.setHeight(400_twips);
        form.Picture2.setHeight(700_twips);
        form.Picture1.setHeight(300_twips);
    }
};

struct BarCase {
    std::string name;
    std::function<void(Form1&)> toggle;
    MenuItem Form1::*entry;
    PictureBox Form1::*bar;
    bool visibleAtStart;
    Twips treeTop;    ///< after one toggle
    Twips treeHeight; ///< after one toggle
};

TEST(BarToggle, TogglesABarAndUpdatesTheLayout) {
    const BarCase cases[] = {
        {"tool bar", mnuToolbar_Click, &Form1::mnuToolbar, &Form1::Picture3, true, 0_twips,
         4000_twips},
        {"CD bar", mnuCDbar_Click, &Form1::mnuCDbar, &Form1::Picture4, false, 1000_twips,
         3000_twips},
        {"activity bar", mnuActivityBar_Click, &Form1::mnuActivityBar, &Form1::Picture2, true,
         600_twips, 4100_twips},
        {"status bar", mnuStatusbar_Click, &Form1::mnuStatusbar, &Form1::Picture1, true, 600_twips,
         3700_twips},
    };
    for (const BarCase& c : cases) {
        SCOPED_TRACE(c.name);
        Window window;
        Form1& form = window.form;
        EXPECT_EQ((form.*c.entry).checked(), c.visibleAtStart);
        EXPECT_EQ((form.*c.bar).visible(), c.visibleAtStart);
        c.toggle(form);
        EXPECT_EQ((form.*c.entry).checked(), !c.visibleAtStart);
        EXPECT_EQ((form.*c.bar).visible(), !c.visibleAtStart);
        EXPECT_EQ(form.TreeView1.top(), c.treeTop);
        EXPECT_EQ(form.TreeView1.height(), c.treeHeight);
        c.toggle(form);
        EXPECT_EQ((form.*c.entry).checked(), c.visibleAtStart);
        EXPECT_EQ((form.*c.bar).visible(), c.visibleAtStart);
        EXPECT_EQ(form.TreeView1.top(), 600_twips);
        EXPECT_EQ(form.TreeView1.height(), 3400_twips);
    }
}

TEST(BarToggle, TheTreeHasTheWindowsHeightIfAllFourBarsAreHidden) {
    Window window;
    mnuToolbar_Click(window.form);
    mnuActivityBar_Click(window.form);
    mnuStatusbar_Click(window.form);
    EXPECT_EQ(window.form.TreeView1.top(), 0_twips);
    EXPECT_EQ(window.form.TreeView1.height(), 5000_twips);
}

TEST(BarToggle, DependsOnTheStateOfTheMenuEntryAndNotOnThatOfTheBar) {
    Window window;
    window.form.Picture3.setVisible(false);
    mnuToolbar_Click(window.form);
    EXPECT_FALSE(window.form.mnuToolbar.checked());
    EXPECT_FALSE(window.form.Picture3.visible());
}

TEST(ForceToolBarOn, ShowsAHiddenToolBarAndKeepsAVisibleOne) {
    Window window;
    forceToolBarOn(window.form);
    EXPECT_TRUE(window.form.mnuToolbar.checked());
    mnuToolbar_Click(window.form);
    forceToolBarOn(window.form);
    EXPECT_TRUE(window.form.mnuToolbar.checked());
    EXPECT_TRUE(window.form.Picture3.visible());
    EXPECT_EQ(window.form.TreeView1.top(), 600_twips);
}

} // namespace
} // namespace sonarith
