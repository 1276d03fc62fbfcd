// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picture_view.h"

#include <QImage>
#include <QTest>
#include <gmock/gmock.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

TEST(PictureView, ReportsPressesAndMovementsWithTheirButtons) {
    Form form("Form1");
    PictureBox model(form, "Image3");
    QWidget parent;
    PictureView view(model, "Hand grip", Symbol::hand, 16, &parent);
    std::vector<std::string> log;
    model.onMouseDown = [&](MouseButtons buttons) {
        log.emplace_back(buttons.left ? "left" : buttons.right ? "right" : "none");
    };
    model.onMouseMove = [&](MouseButtons down) {
        log.emplace_back(down.left ? "moved, left down" : "moved");
    };
    parent.show();
    QTest::mouseClick(&view, Qt::RightButton);
    QTest::mousePress(&view, Qt::LeftButton);
    QMouseEvent move(QEvent::MouseMove, QPointF(3, 3), view.mapToGlobal(QPointF(3, 3)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &move);
    EXPECT_THAT(log, testing::ElementsAre("right", "left", "moved, left down"));
}

TEST(PictureView, APressWithoutAHandlerIsPassedToTheParent) {
    Form form("Form1");
    PictureBox model(form, "Image3");
    QWidget parent;
    PictureView view(model, "Hand grip", Symbol::hand, 16, &parent);
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(3, 3), view.mapToGlobal(QPointF(3, 3)),
                      Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &press);
    EXPECT_FALSE(press.isAccepted());
}

TEST(PictureView, LooksDifferentWithAndWithoutASymbol) {
    Form form("Form1");
    PictureBox model(form, "Image5");
    QWidget parent;
    PictureView bare(model, "", std::nullopt, 18, &parent);
    PictureView shown(model, "", Symbol::disc, 18, &parent);
    bare.resize(18, 18);
    shown.resize(18, 18);
    EXPECT_NE(bare.grab().toImage(), shown.grab().toImage());
}

class BarViewTest : public testing::Test {
  protected:
    BarViewTest() { bar.resize(20, 10); }
    [[nodiscard]] QImage painted() { return bar.grab().toImage(); }

    Form form{"Form1"};
    PictureBox model{form, "Picture1"};
    QWidget parent;
    BarView bar{model, "Status bar", Qt::TopEdge, &parent};
};

TEST_F(BarViewTest, DrawsItsLineAlongTheRequestedEdge) {
    const QImage image = painted();
    EXPECT_NE(image.pixelColor(10, 0), image.pixelColor(10, 5));
    EXPECT_EQ(image.pixelColor(10, 9), image.pixelColor(10, 5));
    EXPECT_EQ(bar.accessibleName(), "Status bar");
}

TEST_F(BarViewTest, DrawsItsLineInAFaintToneOfTheTextColour) {
    const auto tone = [&](const QColor& text, const QColor& window) {
        parent.setPalette(QPalette(text, window, window, window, window, text, window));
        return painted().pixelColor(10, 0);
    };
    // 18 % of the text colour: 46 of 255.
    EXPECT_EQ(tone(Qt::black, Qt::white), QColor(209, 209, 209));
    EXPECT_EQ(tone(Qt::white, Qt::black), QColor(46, 46, 46));
}

} // namespace
} // namespace sonarith
