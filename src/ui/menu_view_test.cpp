// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menu_view.h"

#include <memory>

#include <QApplication>
#include <QTest>
#include <gmock/gmock.h>

#include "platform/controls/form.h"
#include "ui/popup_menus.h"

namespace sonarith {
namespace {

class MenuViewTest : public testing::Test {
  protected:
    MenuViewTest() {
        tool.setChecked(true);
        popup.setVisible(false);
        bar = new MenuBarView({&file, &prefs}, &window);
        popups = std::make_unique<PopupMenus>(form, window, bar);
        window.resize(300, 200);
        window.show();
    }
    ~MenuViewTest() override {
        while (QWidget* popped = QApplication::activePopupWidget()) {
            popped->close();
        }
    }

    QAction& action(const char* name) {
        auto* found = window.findChild<QAction*>(name);
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }

    Form form{"Form1"};
    MenuItem open{form, "mnuOpenfile", "Open"};
    MenuItem remove{form, "mnuFileRemove", "Remove from List"};
    MenuItem popup{form, "mnupopup", "popup", {&remove}};
    MenuItem file{form, "mnuFile", "File", {&open, &popup}};
    MenuItem tool{form, "mnuToolbar", "ToolBar"};
    MenuItem cd{form, "mnuCDbar", "CD Bar"};
    MenuItem bars{form, "mnuGetToolbars", "Toolbars", {&tool, &cd}};
    MenuItem prefs{form, "mnuPrefs", "Preferences", {&bars}};
    QWidget window;
    MenuBarView* bar = nullptr;
    std::unique_ptr<PopupMenus> popups;
};

TEST_F(MenuViewTest, EntriesShowTheirCaptionsWithMnemonics) {
    EXPECT_EQ(action("mnuFile").text(), "&File");
    EXPECT_EQ(action("mnuToolbar").text(), "&ToolBar");
    EXPECT_EQ(action("mnuCDbar").text(), "&CD Bar");
    EXPECT_EQ(bar->letters(), "fp");
}

TEST_F(MenuViewTest, TheMenuBarIsPartOfTheWindowOnEveryDesktop) {
    EXPECT_TRUE(QApplication::testAttribute(Qt::AA_DontUseNativeMenuBar));
    EXPECT_FALSE(bar->isNativeMenuBar());
}

TEST_F(MenuViewTest, ATriggeredEntryClicksItsModel) {
    int clicks = 0;
    open.onClick = [&] {
        ++clicks;
    };
    action("mnuOpenfile").trigger();
    EXPECT_EQ(clicks, 1);
}

TEST_F(MenuViewTest, OnlyTheModelChangesTheTickOfAnEntry) {
    EXPECT_TRUE(action("mnuToolbar").isChecked());
    EXPECT_TRUE(action("mnuCDbar").isCheckable());
    EXPECT_FALSE(action("mnuOpenfile").isCheckable());
    action("mnuToolbar").trigger();
    EXPECT_TRUE(action("mnuToolbar").isChecked())
        << "the tick must not change while the model is unchanged";
    cd.onClick = [&] {
        cd.setChecked(!cd.checked());
    };
    action("mnuCDbar").trigger();
    EXPECT_TRUE(action("mnuCDbar").isChecked());
    action("mnuCDbar").trigger();
    EXPECT_FALSE(action("mnuCDbar").isChecked());
}

TEST_F(MenuViewTest, EntriesAreEnabledAndVisibleLikeTheirModels) {
    EXPECT_FALSE(action("mnupopup").isVisible());
    open.setEnabled(false);
    EXPECT_FALSE(action("mnuOpenfile").isEnabled());
    file.setEnabled(false);
    EXPECT_FALSE(action("mnuFile").isEnabled());
    open.setVisible(false);
    EXPECT_FALSE(action("mnuOpenfile").isVisible());
}

TEST_F(MenuViewTest, TheOnOpenHandlerOfAMenuRunsBeforeTheMenuIsShown) {
    bool popupDuringStep = true;
    popup.onOpen = [&] {
        popupDuringStep = QApplication::activePopupWidget() != nullptr;
        remove.setEnabled(false);
    };
    form.popupRequested.emit(popup);
    EXPECT_FALSE(popupDuringStep);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->objectName(), "mnupopup");
    EXPECT_FALSE(menu->actions().constFirst()->isEnabled());
}

TEST_F(MenuViewTest, ADisabledPopupMenuDoesNotOpenWhenRequested) {
    popup.setEnabled(false);
    form.popupRequested.emit(popup);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(MenuViewTest, AltWithALetterOpensAMenuInWhichALetterTriggersAnEntry) {
    int clicks = 0;
    open.onClick = [&] {
        ++clicks;
    };
    window.activateWindow();
    QCoreApplication::processEvents();
    QTest::keyClick(&window, Qt::Key_F, Qt::AltModifier);
    QWidget* menu = QApplication::activePopupWidget();
    ASSERT_NE(menu, nullptr);
    QTest::keyClick(menu, Qt::Key_O);
    EXPECT_EQ(clicks, 1);
}

} // namespace
} // namespace sonarith
