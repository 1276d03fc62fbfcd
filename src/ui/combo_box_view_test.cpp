// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/combo_box_view.h"

#include <QAbstractItemView>
#include <QTest>
#include <QWheelEvent>
#include <gmock/gmock.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

class ComboBoxViewTest : public testing::Test {
  protected:
    ComboBoxViewTest() {
        for (const char* entry : {"32 kbit", "64 kbit", "128 kbit"}) {
            model.addItem(entry);
        }
        model.onClick = [this] {
            ++clicks;
        };
        parent.show();
        QCoreApplication::processEvents();
    }

    int clicks = 0;
    Form form{"FrmPrefs"};
    ComboBox model{form, "Combo2"};
    QWidget parent;
    ComboBoxView view{model, "Encoding bit rate", &parent};
};

TEST_F(ComboBoxViewTest, ShowsTheEntriesAndTheSelectionWhenCodeChangesThem) {
    EXPECT_EQ(view.count(), 3);
    EXPECT_EQ(view.currentIndex(), -1);
    EXPECT_EQ(view.accessibleName(), "Encoding bit rate");
    model.setListIndex(1).passOver();
    EXPECT_EQ(view.currentText(), "64 kbit");
    EXPECT_EQ(clicks, 1);
    model.clear();
    EXPECT_EQ(view.count(), 0);
    EXPECT_EQ(clicks, 1);
}

TEST_F(ComboBoxViewTest, ACursorKeySelectsAnEntryAndRunsTheHandlerOnce) {
    model.setListIndex(0).passOver();
    clicks = 0;
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_EQ(model.listIndex(), 1);
    EXPECT_EQ(clicks, 1);
}

TEST_F(ComboBoxViewTest, ChoosingTheEntryThatIsAlreadySelectedRunsTheHandler) {
    model.setListIndex(1).passOver();
    clicks = 0;
    view.showPopup();
    QTest::keyClick(view.view(), Qt::Key_Return);
    EXPECT_EQ(model.listIndex(), 1);
    EXPECT_EQ(clicks, 1);
}

TEST_F(ComboBoxViewTest, ShowsTheSelectionThatTheHandlerHasSet) {
    model.setListIndex(2).passOver();
    model.onClick = [this] {
        if (model.listIndex() != 2) {
            model.setListIndex(2).passOver();
        }
    };
    QTest::keyClick(&view, Qt::Key_Up);
    EXPECT_EQ(view.currentIndex(), 2);
}

TEST_F(ComboBoxViewTest, AnOpenListClosesWhenItsEntriesChange) {
    view.showPopup();
    ASSERT_TRUE(view.view()->isVisible());
    model.addItem("320 kbit");
    EXPECT_FALSE(view.view()->isVisible());
    EXPECT_EQ(view.count(), 4);
}

TEST_F(ComboBoxViewTest, TheWheelOverTheClosedBoxSelectsNothing) {
    model.setListIndex(0).passOver();
    QWheelEvent turn(QPointF(2, 2), view.mapToGlobal(QPointF(2, 2)), {}, QPoint(0, -120),
                     Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&view, &turn);
    EXPECT_EQ(model.listIndex(), 0);
    EXPECT_FALSE(turn.isAccepted());
}

} // namespace
} // namespace sonarith
