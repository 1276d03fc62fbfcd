// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/slider_view.h"

#include <memory>
#include <utility>

#include <QAccessible>
#include <QStyleFactory>
#include <QStyleOptionSlider>
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
    SliderView view{model, "CD volume", Qt::Vertical, SliderView::Greatest::bottomOrLeft,
                    10,    &parent};
};

TEST_F(SliderViewTest, AValueThatCodeSetsIsShownAndRunsNoHandler) {
    model.setValue(32768).passOver();
    // The model's value is the distance of the handle from the upper end; the widget's value is the
    // distance from the lower end.
    EXPECT_EQ(view.value(), 32767);
    EXPECT_EQ(view.maximum(), 65535);
    EXPECT_EQ(moves, 0);
}

TEST_F(SliderViewTest, TheHandleMovesInTheDirectionOfTheKeyAndOfTheWheel) {
    // The model's greatest value is at the bottom, so a move upwards decreases the model's value.
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

/// The middle of the handle, in pixels from the slider's upper edge.
int handleOf(const SliderView& view) {
    QStyleOptionSlider option;
    option.initFrom(&view);
    option.orientation = view.orientation();
    option.minimum = view.minimum();
    option.maximum = view.maximum();
    option.sliderPosition = view.sliderPosition();
    option.sliderValue = view.value();
    // Set as QSlider sets it: the widget's highest value is at the top of a vertical slider.
    option.upsideDown = !view.invertedAppearance();
    return view.style()
        ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &view)
        .center()
        .y();
}

TEST_F(SliderViewTest, TheHandleIsAtTheRequestedEndForTheControlsGreatestValue) {
    SliderView upright(model, "", Qt::Vertical, SliderView::Greatest::topOrRight, 10, &parent);
    upright.resize(view.size());
    model.setValue(0).passOver();
    EXPECT_LT(handleOf(view), 20);
    EXPECT_GT(handleOf(upright), 180);
    model.setValue(65535).passOver();
    EXPECT_GT(handleOf(view), 180);
    EXPECT_LT(handleOf(upright), 20);
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_EQ(model.value(), 65535) << "after the home key, the handle must be at the lower end";
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(model.value(), 0) << "after the end key, the handle must be at the upper end";
}

/// Counts the pixels of the filled part in the upper and in the lower half of the slider.
std::pair<int, int> filledPixels(SliderView& view) {
    const QImage picture = view.grab().toImage();
    std::pair<int, int> filled;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            if (color.blue() > color.red() + 60) {
                ++(y < picture.height() / 2 ? filled.first : filled.second);
            }
        }
    }
    return filled;
}

TEST_F(SliderViewTest, TheFilledPartReachesFromTheLowerEndToTheHandle) {
    const std::unique_ptr<QStyle> fusion(QStyleFactory::create("fusion"));
    ASSERT_TRUE(fusion);
    view.setStyle(fusion.get());
    QPalette palette;
    palette.setColor(QPalette::Highlight, Qt::blue);
    view.setPalette(palette);
    model.setValue(65535).passOver(); // silence
    EXPECT_EQ(filledPixels(view).first, 0);
    model.setValue(32768).passOver();
    EXPECT_GT(filledPixels(view).second, 50);
    const int upperOfHalf = filledPixels(view).first;
    model.setValue(0).passOver(); // the loudest
    EXPECT_GT(filledPixels(view).first, upperOfHalf + 50);
    EXPECT_GT(filledPixels(view).second, 50);
    view.setStyle(nullptr);
}

TEST_F(SliderViewTest, ShowsThePositionThatTheHandlerHasSet) {
    model.onScroll = [this] {
        model.setValue(100).passOver();
    };
    view.setValue(5000);
    EXPECT_EQ(view.value(), 65435);
    EXPECT_EQ(model.value(), 100);
}

TEST_F(SliderViewTest, AScreenReaderReadsAndSetsTheNumberThatTheUserSees) {
    QAccessibleInterface* read = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->role(), QAccessible::Slider);
    EXPECT_EQ(read->text(QAccessible::Name), "CD volume");
    QAccessibleValueInterface* value = read->valueInterface();
    ASSERT_NE(value, nullptr);
    // The scale is from 0 (silence) to 10 (the loudest, for which the value of the model is 0).
    EXPECT_DOUBLE_EQ(value->minimumValue().toDouble(), 0);
    EXPECT_DOUBLE_EQ(value->maximumValue().toDouble(), 10);
    EXPECT_NEAR(value->minimumStepSize().toDouble(), 0.2, 0.001);
    value->setCurrentValue(10);
    EXPECT_EQ(model.value(), 0);
    EXPECT_EQ(moves, 0) << "the handler must not run: the slider was already at this position";
    value->setCurrentValue(7.5);
    EXPECT_NEAR(model.value(), 65535 / 4, 1);
    EXPECT_EQ(moves, 1);
    EXPECT_EQ(read->text(QAccessible::Value), "7.5");
    model.setValue(65535).passOver();
    EXPECT_DOUBLE_EQ(value->currentValue().toDouble(), 0);
    EXPECT_EQ(moves, 1);
    view.setEnabled(false);
    EXPECT_TRUE(read->state().disabled);
}

} // namespace
} // namespace sonarith
