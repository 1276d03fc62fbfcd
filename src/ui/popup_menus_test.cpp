// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/popup_menus.h"

#include <QApplication>
#include <QCursor>
#include <QTest>
#include <gmock/gmock.h>

#include "ui/popup_place.h"

namespace sonarith {
namespace {

class PopupMenusTest : public testing::Test {
  protected:
    PopupMenusTest() {
        popup.setVisible(false);
        window.show();
    }
    ~PopupMenusTest() override {
        while (QWidget* open = QApplication::activePopupWidget()) {
            open->close();
        }
    }
    static QMenu* opened() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

    Form form{"frmsearch"};
    MenuItem select{form, "mnuSeelectfile", "Select for Conversion"};
    MenuItem close{form, "mnuClose", "Close Window"};
    MenuItem popup{form, "mnupopup", "popup", {&select, &close}};
    QWidget window;
    PopupMenus menus{form, window, nullptr};
};

TEST_F(PopupMenusTest, AMenuOpensAtThePositionOfThePressThatRequestsIt) {
    const QPoint corner = window.mapToGlobal(QPoint(30, 40));
    {
        const PopupPlace place(corner);
        form.popupRequested.emit(popup);
    }
    ASSERT_NE(opened(), nullptr);
    EXPECT_EQ(opened()->pos(), corner);
    EXPECT_EQ(opened()->objectName(), "mnupopup");
    EXPECT_EQ(opened()->actions().size(), 2);
    EXPECT_EQ(opened()->parentWidget(), &window);
}

TEST_F(PopupMenusTest, TriggeringAnEntryByTheKeyboardCallsOnClickOfItsMenuItem) {
    int clicks = 0;
    close.onClick = [&] {
        ++clicks;
    };
    form.popupRequested.emit(popup);
    ASSERT_NE(opened(), nullptr);
    QTest::keyClick(opened(), Qt::Key_Up); // the last entry
    QTest::keyClick(opened(), Qt::Key_Return);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(opened(), nullptr);
}

TEST_F(PopupMenusTest, AMenuIsBuiltOnceAndItsOnOpenHandlerRunsAtEachOpening) {
    int openings = 0;
    popup.onOpen = [&] {
        ++openings;
        select.setEnabled(false);
    };
    form.popupRequested.emit(popup);
    const QMenu* first = opened();
    ASSERT_NE(first, nullptr);
    EXPECT_FALSE(first->actions().constFirst()->isEnabled());
    opened()->close();
    form.popupRequested.emit(popup);
    EXPECT_EQ(opened(), first);
    EXPECT_EQ(openings, 2);
}

TEST(PopupPlace, IsThePositionOfTheNewestOfSeveralNestedPresses) {
    const PopupPlace outer(QPoint(1, 2));
    {
        const PopupPlace inner(QPoint(3, 4));
        EXPECT_EQ(PopupPlace::current(), QPoint(3, 4));
    }
    EXPECT_EQ(PopupPlace::current(), QPoint(1, 2));
}

TEST(PopupPlace, IsThePointersPositionIfThereIsNoPress) {
    EXPECT_EQ(PopupPlace::current(), QCursor::pos());
}

} // namespace
} // namespace sonarith
