// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/system_move.h"

#include <QTest>
#include <gmock/gmock.h>

#include "platform/controls/basic_controls.h"
#include "ui/picture_view.h"

namespace sonarith {
namespace {

/// Creates two nested pictures, as in the player's panel. A press of the left button on the inner
/// picture, or a mouse move over the outer picture with that button down, requests a move of the
/// window. The inner picture ignores mouse moves, so they reach the outer picture.
class SystemMoveTest : public testing::Test {
  protected:
    SystemMoveTest() {
        const auto drag = [this](MouseButtons buttons) {
            if (buttons.left) {
                ++requests;
                move.start();
            }
        };
        outer.onMouseMove = drag;
        inner.onMouseDown = drag;
        window.resize(200, 100);
        outerView.setGeometry(0, 0, 200, 100);
        innerView.setGeometry(0, 0, 100, 100);
        window.show();
    }
    void press(const QPoint& at, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(window.windowHandle(), button, {}, at);
    }
    void moveTo(const QPoint& at) { QTest::mouseMove(window.windowHandle(), at); }
    void release(const QPoint& at, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseRelease(window.windowHandle(), button, {}, at);
    }

    Form form{"Form4"};
    PictureBox outer{form, "Picture3"};
    PictureBox inner{form, "picPeakVol"};
    QWidget window;
    PictureView outerView{outer, "outer", std::nullopt, 0, &window};
    PictureView innerView{inner, "inner", std::nullopt, 0, &outerView};
    int requests = 0;
    int started = 0;
    bool possible = true;
    SystemMove move{window, [this](QWindow& moved) {
                        EXPECT_EQ(&moved, window.windowHandle());
                        started += possible ? 1 : 0;
                        return possible;
                    }};
};

TEST_F(SystemMoveTest, ADragStartsOneMove) {
    press({10, 10});
    moveTo({30, 10});
    moveTo({60, 40});
    EXPECT_GE(requests, 3);
    EXPECT_EQ(started, 1);
}

TEST_F(SystemMoveTest, AReleaseAwayFromTheLastMousePositionStartsNoSecondMove) {
    // Qt converts such a release into a mouse move with the button down, followed by a release.
    for (const QPoint& grip : {QPoint(10, 10), QPoint(150, 10)}) {
        requests = started = 0;
        press(grip);
        moveTo(grip + QPoint(5, 0));
        EXPECT_EQ(started, 1);
        const int before = requests;
        release(grip + QPoint(30, 40));
        EXPECT_EQ(requests, before + 1);
        EXPECT_EQ(started, 1);
    }
}

TEST_F(SystemMoveTest, EachPressOfTheLeftButtonStartsAMove) {
    press({10, 10});
    release({10, 10});
    press({10, 10});
    EXPECT_EQ(started, 2);
    // The next press follows without a release: some desktops do not send the release that ends a
    // move.
    press({10, 10});
    EXPECT_EQ(started, 3);
    release({10, 10});
}

TEST_F(SystemMoveTest, AClickOfTheRightButtonDuringADragStartsNoSecondMove) {
    press({150, 10});
    moveTo({155, 10});
    press({155, 10}, Qt::RightButton);
    release({155, 10}, Qt::RightButton);
    moveTo({160, 10});
    EXPECT_EQ(started, 1);
    release({160, 10});
}

TEST_F(SystemMoveTest, AMoveThatTheDesktopRefusesIsRequestedAgainAtTheNextMouseMove) {
    possible = false;
    press({10, 10});
    EXPECT_EQ(started, 0);
    possible = true;
    moveTo({30, 10});
    EXPECT_EQ(started, 1);
    release({30, 10});
}

TEST_F(SystemMoveTest, AWindowThatWasNeverShownIsNotMoved) {
    QWidget unseen;
    SystemMove unseenMove(unseen, [this](QWindow&) {
        ++started;
        return true;
    });
    unseenMove.start();
    EXPECT_EQ(started, 0);
}

} // namespace
} // namespace sonarith
