// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the two views of the level meter: the trace shows lines; the block is a filled rectangle,
// of which only the part inside the parent widget is visible.
#include "ui/trace_view.h"

#include <QImage>
#include <QTest>
#include <QWindow>
#include <gmock/gmock.h>

#include "platform/controls/form.h"
#include "ui/block_view.h"

namespace sonarith {
namespace {

const TraceView::Colors colors{Qt::black, Qt::green};

/// Collects the repainted regions.
class WatchedTrace : public TraceView {
  public:
    using TraceView::TraceView;
    QRegion repainted;

  protected:
    void paintEvent(QPaintEvent* event) override {
        repainted += event->region();
        TraceView::paintEvent(event);
    }
};

class TraceViewTest : public testing::Test {
  protected:
    TraceViewTest() {
        model.setWidth(2445_twips);
        model.setHeight(945_twips);
        view.resize(view.sizeHint());
        parent.resize(300, 200);
        parent.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&parent));
        QCoreApplication::processEvents();
        view.repainted = {};
    }
    bool isLine(int x, int y) {
        return view.grab().toImage().pixelColor(x, y) == QColor(Qt::green);
    }

    Form form{"Form4"};
    PictureBox model{form, "picPeakVol"};
    QWidget parent;
    WatchedTrace view{model, "Sound Level Meter", colors, &parent};
};

TEST_F(TraceViewTest, IsLargeEnoughToShowALineJustBelowTheLowerEdgeOfTheControl) {
    EXPECT_EQ(view.size(), QSize(164, 64));
    // Silence is drawn at 950 twips, below the control's lower edge at 945 twips.
    model.line({0, 950}, {2445, 950});
    EXPECT_TRUE(isLine(80, 63));
    EXPECT_FALSE(isLine(80, 62));
}

TEST_F(TraceViewTest, LinesAreShownUntilTheyAreCleared) {
    model.line({150, 300}, {450, 300});
    model.line({450, 300}, {450, 600});
    EXPECT_TRUE(isLine(20, 20));
    EXPECT_TRUE(isLine(30, 30));
    EXPECT_FALSE(isLine(20, 30));
    model.clear();
    EXPECT_FALSE(isLine(20, 20));
}

TEST_F(TraceViewTest, ANewLineRepaintsOnlyItsOwnArea) {
    model.line({150, 300}, {165, 315});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !view.repainted.isEmpty(); }));
    EXPECT_TRUE(QRect(8, 18, 8, 8).contains(view.repainted.boundingRect()))
        << "repainted width in pixels: " << view.repainted.boundingRect().width();
}

// The meter draws a hundred lines a second.
TEST_F(TraceViewTest, LinesInQuickSuccessionAreRepaintedTogether) {
    int repaints = 0;
    for (int x = 15; x <= 1500; x += 15) {
        model.line({x - 15.0, 300}, {x + 0.0, 300});
        view.repainted = {};
        QCoreApplication::processEvents();
        repaints += view.repainted.isEmpty() ? 0 : 1;
    }
    EXPECT_LT(repaints, 50);
    view.repainted = {};
    model.line({1500, 300}, {1515, 300});
    ASSERT_TRUE(QTest::qWaitFor([&] { return view.repainted.contains(QPoint(100, 20)); }));
    EXPECT_TRUE(isLine(100, 20));
}

TEST_F(TraceViewTest, IsNotRepaintedWhileHiddenButRepaintedFullyAtTheFirstLineAfterwards) {
    parent.windowHandle()->setVisible(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !parent.windowHandle()->isExposed(); }));
    QCoreApplication::processEvents();
    view.repainted = {};
    model.line({150, 150}, {300, 150});
    model.line({300, 150}, {450, 150});
    QCoreApplication::processEvents();
    EXPECT_TRUE(view.repainted.isEmpty());
    parent.windowHandle()->setVisible(true);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&parent));
    QCoreApplication::processEvents();
    view.repainted = {};
    model.line({450, 150}, {600, 150});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !view.repainted.isEmpty(); }));
    EXPECT_EQ(view.repainted, QRegion(view.rect()));
    EXPECT_TRUE(isLine(15, 10));
}

TEST_F(TraceViewTest, IfALineExtendsBeyondTheViewItsPartInsideTheViewIsShown) {
    model.line({-1e300, -1e300}, {1e300, 1e300});
    model.line({150, -1050}, {150, 900});
    EXPECT_TRUE(isLine(10, 0));
    EXPECT_TRUE(isLine(10, 50));
}

TEST_F(TraceViewTest, LinesAreTwoPixelsWideOnAScreenWithTwiceTheResolution) {
    model.line({150, 300}, {450, 300});
    QImage fine(view.size() * 2, QImage::Format_RGB32);
    fine.setDevicePixelRatio(2);
    view.render(&fine);
    // The line is one device-independent pixel wide, which is two pixels of this image.
    EXPECT_EQ(fine.pixelColor(40, 38), QColor(Qt::black));
    int green = 0;
    for (int y = 36; y < 46; ++y) {
        green += fine.pixelColor(40, y) == QColor(Qt::green) ? 1 : 0;
    }
    EXPECT_EQ(green, 2);
}

TEST_F(TraceViewTest, PressesAreReportedToTheControl) {
    int right = 0;
    model.onMouseDown = [&](MouseButtons buttons) {
        right += buttons.right ? 1 : 0;
    };
    QTest::mouseClick(&view, Qt::RightButton);
    EXPECT_EQ(right, 1);
    EXPECT_EQ(view.accessibleName(), "Sound Level Meter");
}

TEST(BlockView, IsAtThePositionOfItsControlAndClippedByItsParent) {
    Form form("Form4");
    PictureBox clip(form, "Picture8");
    Label bar(form, "Label4");
    bar.setLeft(-180_twips);
    bar.setTop(450_twips);
    bar.setWidth(555_twips);
    bar.setHeight(6000_twips);
    QWidget parent;
    PictureView clipView(clip, "Level", std::nullopt, 0, &parent);
    clipView.setGeometry(10, 10, 9, 61);
    const BlockView block(bar, "Level", Qt::green, &clipView);
    parent.resize(60, 120);
    const auto isGreen = [&](int x, int y) {
        return parent.grab().toImage().pixelColor(x, y) == QColor(Qt::green);
    };
    EXPECT_EQ(block.geometry(), QRect(-12, 30, 37, 400));
    EXPECT_FALSE(isGreen(12, 39));
    EXPECT_TRUE(isGreen(12, 40));
    EXPECT_TRUE(isGreen(12, 70));
    EXPECT_FALSE(isGreen(12, 71));
    EXPECT_FALSE(isGreen(9, 50));
    EXPECT_FALSE(isGreen(19, 50));
    bar.setTop(915_twips);
    ASSERT_TRUE(QTest::qWaitFor([&] { return block.y() == 61; }));
    EXPECT_FALSE(isGreen(12, 70));
}

// The meter moves its bar a hundred times a second.
TEST(BlockView, SeveralQuickMovesAreShownTogetherAndTheLastMoveIsNotLost) {
    Form form("Form4");
    Label bar(form, "Label4");
    QWidget parent;
    const BlockView block(bar, "Level", Qt::green, &parent);
    int moves = 0;
    for (int i = 1; i <= 1000; ++i) {
        const int before = block.y();
        bar.setTop(Twips(15 * i));
        moves += block.y() != before ? 1 : 0;
    }
    EXPECT_LT(moves, 500);
    EXPECT_TRUE(QTest::qWaitFor([&] { return block.y() == 1000; }));
}

} // namespace
} // namespace sonarith
