// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picture_view.h"

#include <QImage>
#include <QTest>
#include <gmock/gmock.h>

namespace sonarith {
namespace {

TEST(PictureView, ALeftPressAloneIsReported) {
    PictureBox model("Image3");
    QWidget parent;
    PictureView view(model, "Hand grip", Symbol::hand, 16, &parent);
    int presses = 0;
    view.onLeftPress = [&] {
        ++presses;
    };
    parent.show();
    QTest::mouseClick(&view, Qt::RightButton);
    EXPECT_EQ(presses, 0);
    QTest::mouseClick(&view, Qt::LeftButton);
    EXPECT_EQ(presses, 1);
}

TEST(PictureView, PaintsItsSymbolAndNothingWithoutOne) {
    PictureBox model("Image5");
    QWidget parent;
    PictureView bare(model, "", std::nullopt, 18, &parent);
    PictureView shown(model, "", Symbol::disc, 18, &parent);
    bare.resize(18, 18);
    shown.resize(18, 18);
    EXPECT_NE(bare.grab().toImage(), shown.grab().toImage());
}

TEST(BarView, DrawsItsLineAlongTheEdgeThatWasAskedFor) {
    PictureBox model("Picture1");
    QWidget parent;
    BarView bar(model, "Status bar", Qt::TopEdge, &parent);
    bar.resize(20, 10);
    const QImage painted = bar.grab().toImage();
    EXPECT_NE(painted.pixelColor(10, 0), painted.pixelColor(10, 5));
    EXPECT_EQ(painted.pixelColor(10, 9), painted.pixelColor(10, 5));
    EXPECT_EQ(bar.accessibleName(), "Status bar");
}

} // namespace
} // namespace sonarith
