// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/slider_view.h"

#include <QAccessible>
#include <QTest>
#include <QWheelEvent>
#include <gmock/gmock.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

class SliderViewTest : public testing::Test {
  protected:
    SliderViewTest() {
        model.onScroll = [this] {
            ++moves;
        };
        view.resize(30, 200);
        parent.show();
    }

    int moves = 0;
    Form form{"Form4"};
    Slider model{form, "Slider1", 0, 65535};
    QWidget parent;
    SliderView view{model, "CD volume", Qt::Vertical, SliderView::Greatest::bottomOrLeft, &parent};
};

TEST_F(SliderViewTest, ACodesMoveIsShownAndRunsNoHandler) {
    model.setValue(32768).passOver();
    EXPECT_EQ(view.value(), 32768);
    EXPECT_EQ(view.maximum(), 65535);
    EXPECT_EQ(moves, 0);
}

TEST_F(SliderViewTest, KeysAndTheWheelMoveTheHandleInTheirDirection) {
    // The greatest value is at the bottom.
    model.setValue(32768).passOver();
    QTest::keyClick(&view, Qt::Key_Up);
    const int afterKey = model.value();
    EXPECT_LT(afterKey, 32768);
    EXPECT_EQ(moves, 1);
    QTest::keyClick(&view, Qt::Key_PageDown);
    EXPECT_GT(model.value(), 32768);
    model.setValue(32768).passOver();
    moves = 0;
    QWheelEvent away(QPointF(5, 5), view.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, 120),
                     Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&view, &away);
    EXPECT_EQ(moves, 1);
    EXPECT_LT(model.value(), 32768);
}

TEST_F(SliderViewTest, TheGreatestValueIsAtTheRequestedEnd) {
    EXPECT_TRUE(view.invertedAppearance());
    const SliderView upright(model, "", Qt::Vertical, SliderView::Greatest::topOrRight, &parent);
    EXPECT_FALSE(upright.invertedAppearance());
}

TEST_F(SliderViewTest, ShowsThePositionThatTheHandlerHasSet) {
    model.onScroll = [this] {
        model.setValue(100).passOver();
    };
    view.setValue(5000);
    EXPECT_EQ(view.value(), 100);
}

TEST_F(SliderViewTest, AScreenReaderReadsAndSetsItsValue) {
    QAccessibleInterface* read = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->role(), QAccessible::Slider);
    EXPECT_EQ(read->text(QAccessible::Name), "CD volume");
    QAccessibleValueInterface* value = read->valueInterface();
    ASSERT_NE(value, nullptr);
    value->setCurrentValue(1000);
    EXPECT_EQ(model.value(), 1000);
    EXPECT_EQ(moves, 1);
    model.setValue(2000).passOver();
    EXPECT_EQ(value->currentValue().toInt(), 2000);
    EXPECT_EQ(value->maximumValue().toInt(), 65535);
}

} // namespace
} // namespace sonarith
