// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the views of frames and tab controls. Other widgets are laid out on these views.
#include <QTabBar>
#include <QTest>
#include <gmock/gmock.h>

#include "platform/controls/form.h"
#include "ui/frame_view.h"
#include "ui/tab_control_view.h"

namespace sonarith {
namespace {

TEST(FrameView, TheCaptionIsShownAndADisabledFrameDisablesItsContents) {
    Form form("FrmPrefs");
    Frame model(form, "DriveSpace", "Drives & Space");
    QWidget parent;
    FrameView view(model, &parent);
    const QWidget inside(&view);
    EXPECT_EQ(view.title(), "Drives && Space");
    EXPECT_EQ(view.accessibleName(), "Drives & Space");
    model.setEnabled(false);
    EXPECT_FALSE(inside.isEnabled());
}

class TabControlViewTest : public testing::Test {
  protected:
    TabControlViewTest() { parent.show(); }

    Form form{"FrmPrefs"};
    TabControl model{form, "SSTab2", {"Disk Space", "Audio, Misc.", " Destination Path"}};
    QWidget parent;
    TabControlView view{model, "Preferences", &parent};
};

TEST_F(TabControlViewTest, HasAPageForEachCaption) {
    EXPECT_EQ(view.count(), 3);
    EXPECT_EQ(view.tabText(2), " Destination Path");
    EXPECT_EQ(view.page(2).accessibleName(), "Destination Path");
    EXPECT_EQ(view.tabBar()->accessibleTabName(1), "Audio, Misc.");
    EXPECT_EQ(view.accessibleName(), "Preferences");
}

TEST_F(TabControlViewTest, APageCanBeSelectedByCodeOrAKeyOrAClick) {
    model.setTab(2).passOver();
    EXPECT_EQ(view.currentIndex(), 2);
    QTest::keyClick(view.tabBar(), Qt::Key_Left);
    EXPECT_EQ(model.tab(), 1);
    QTest::mouseClick(view.tabBar(), Qt::LeftButton, {}, view.tabBar()->tabRect(0).center());
    EXPECT_EQ(model.tab(), 0);
}

} // namespace
} // namespace sonarith
