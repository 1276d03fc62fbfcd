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
    Windows windows;
    Form1 form{loop, state, windows};

    Window() {
        form.setInnerSize(4000, 5000);
        form.Picture3.setHeight(600);
        form.Picture4.setHeight(400);
        form.Picture2.setHeight(700);
        form.Picture1.setHeight(300);
    }
};

struct BarCase {
    std::string name;
    std::function<void(Form1&)> toggle;
    MenuItem Form1::*entry;
    PictureBox Form1::*bar;
    bool visibleAtStart;
    Twips treeTop; ///< after one toggle
    Twips treeHeight;
};

TEST(BarToggle, HidesACheckedBarShowsAnUncheckedOneAndLaysTheWindowOutAnew) {
    const BarCase cases[] = {
        {"tool bar", mnuToolbar_Click, &Form1::mnuToolbar, &Form1::Picture3, true, 0, 4000},
        {"CD bar", mnuCDbar_Click, &Form1::mnuCDbar, &Form1::Picture4, false, 1000, 3000},
        {"activity bar", mnuActivityBar_Click, &Form1::mnuActivityBar, &Form1::Picture2, true, 600,
         4100},
        {"status bar", mnuStatusbar_Click, &Form1::mnuStatusbar, &Form1::Picture1, true, 600, 3700},
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
        EXPECT_EQ(form.TreeView1.top(), 600);
        EXPECT_EQ(form.TreeView1.height(), 3400);
    }
}

TEST(BarToggle, LetsTheTreeFillTheWindowWithAllFourHidden) {
    Window window;
    mnuToolbar_Click(window.form);
    mnuActivityBar_Click(window.form);
    mnuStatusbar_Click(window.form);
    EXPECT_EQ(window.form.TreeView1.top(), 0);
    EXPECT_EQ(window.form.TreeView1.height(), 5000);
}

TEST(BarToggle, GoesByTheEntryNotByTheBar) {
    Window window;
    window.form.Picture3.setVisible(false);
    mnuToolbar_Click(window.form);
    EXPECT_FALSE(window.form.mnuToolbar.checked());
    EXPECT_FALSE(window.form.Picture3.visible());
}

TEST(ForceToolBarOn, ShowsTheBarFromEitherState) {
    Window window;
    forceToolBarOn(window.form);
    EXPECT_TRUE(window.form.mnuToolbar.checked());
    mnuToolbar_Click(window.form);
    forceToolBarOn(window.form);
    EXPECT_TRUE(window.form.mnuToolbar.checked());
    EXPECT_TRUE(window.form.Picture3.visible());
    EXPECT_EQ(window.form.TreeView1.top(), 600);
}

} // namespace
} // namespace sonarith
