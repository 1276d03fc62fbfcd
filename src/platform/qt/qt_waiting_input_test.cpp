// SPDX-License-Identifier: GPL-3.0-or-later
// Tests how a wait treats events that arrive during the wait: input, requests to close a window,
// and signals to end the program.
#include "platform/qt/qt_waiting.h"

#include <csignal>
#include <memory>
#include <utility>

#include <QCoreApplication>
#include <QShortcut>
#include <QTest>
#include <gmock/gmock.h>

#include "platform/qt/end_requests.h"
#include "platform/qt/qt_waiting_fixture.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Outcome = Waiting::Outcome;

TEST_F(QtWaitingTest, HoldsInputAndDeliversItInOrderWhenTheLoopContinues) {
    NotingWindow window(log);
    (void)waitAnd([&] {
        press(window);
        press(window, QEvent::MouseButtonRelease);
        type(window, 'a', Qt::Key_A);
        dropFile(window, "/disc.cue");
        type(window, 'b', Qt::Key_B);
    });
    EXPECT_THAT(log, IsEmpty());
    handleHeldEvents();
    EXPECT_THAT(log,
                ElementsAre("press", "release", "key a", "drag enters", "drop /disc.cue", "key b"));
}

TEST_F(QtWaitingTest, HoldsWheelEventsAndDeliversThemWhenTheLoopContinues) {
    NotingWindow window(log);
    (void)waitAnd([&] {
        QWheelEvent wheel({5, 5}, window.mapToGlobal(QPointF(5, 5)), {}, {0, 120}, {}, {},
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(window.windowHandle(), &wheel);
    });
    EXPECT_THAT(log, IsEmpty());
    handleHeldEvents();
    EXPECT_THAT(log, ElementsAre("wheel"));
}

TEST_F(QtWaitingTest, ATouchDuringAWaitIsNotAccepted) {
    NotingWindow window(log);
    std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    (void)waitAnd([&] {
        const QPointF at = window.mapToGlobal(QPointF(5, 5));
        const auto touch = [&](QEvent::Type type, QEventPoint::State state) {
            QTouchEvent event(type, screen.get(), {}, {{1, state, at, at}});
            QCoreApplication::sendEvent(window.windowHandle(), &event);
            EXPECT_FALSE(event.isAccepted()) << "the touch must not be accepted: Qt converts only "
                                                "unaccepted touches to mouse input";
        };
        touch(QEvent::TouchBegin, QEventPoint::Pressed);
        touch(QEvent::TouchEnd, QEventPoint::Released);
    });
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(QtWaitingTest, ManyMouseMovementsDuringAWaitAreDeliveredAsOne) {
    NotingWindow window(log);
    window.setMouseTracking(true);
    class Moves : public QObject {
      public:
        int count = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            count += event->type() == QEvent::MouseMove ? 1 : 0;
            return false;
        }
    } moves;
    window.installEventFilter(&moves);
    (void)waitAnd([&] {
        for (int x = 0; x < 100; ++x) {
            qt_handleMouseEvent(window.windowHandle(), QPointF(x, 5),
                                window.mapToGlobal(QPoint(x, 5)), {}, {}, QEvent::MouseMove, {}, 0);
        }
    });
    handleHeldEvents();
    EXPECT_EQ(moves.count, 1);
}

TEST_F(QtWaitingTest, AShortcutPressedDuringAWaitRunsAfterwards) {
    NotingWindow window(log);
    window.activateWindow();
    QCoreApplication::processEvents();
    QShortcut shortcut(Qt::Key_F10, &window);
    int activated = 0;
    QObject::connect(&shortcut, &QShortcut::activated, [&] { ++activated; });
    (void)waitAnd([&] {
        qt_handleKeyEvent(window.windowHandle(), QEvent::KeyPress, Qt::Key_F10, {});
        qt_handleKeyEvent(window.windowHandle(), QEvent::KeyRelease, Qt::Key_F10, {});
    });
    EXPECT_EQ(activated, 0);
    handleHeldEvents();
    EXPECT_EQ(activated, 1);
}

TEST_F(QtWaitingTest, HeldInputForADestroyedWindowIsDropped) {
    auto gone = std::make_unique<NotingWindow>(log, "gone ");
    NotingWindow other(log, "other ");
    (void)waitAnd([&] {
        press(*gone);
        press(other);
    });
    gone.reset();
    handleHeldEvents();
    EXPECT_THAT(log, ElementsAre("other press"));
}

TEST_F(QtWaitingTest, HoldsAResizeAndDeliversItWhenTheLoopContinues) {
    NotingWindow window(log);
    (void)waitAnd([&] { window.windowHandle()->resize(200, 100); });
    EXPECT_THAT(log, IsEmpty());
    handleHeldEvents();
    EXPECT_THAT(log, testing::Contains("resize 200"));
}

TEST_F(QtWaitingTest, InputDuringAYieldOfAHandlerIsQueuedAfterHeldInput) {
    NotingWindow window(log);
    bool first = true;
    window.onPress = [&] {
        if (std::exchange(first, false)) {
            press(window, QEvent::MouseButtonRelease);
            loop.waitFor(20ms);
            log.emplace_back("handler returns");
        }
    };
    (void)waitAnd([&] {
        press(window);
        type(window, 'a', Qt::Key_A);
    });
    handleHeldEvents();
    EXPECT_THAT(log, ElementsAre("press", "key a", "release", "handler returns"));
}

TEST_F(QtWaitingTest, AHandlerOfHeldInputMayWaitAgain) {
    NotingWindow window(log);
    bool first = true;
    window.onPress = [&] {
        if (std::exchange(first, false)) {
            EXPECT_EQ(waitAnd([&] { type(window, 'b', Qt::Key_B); }), Outcome::late);
            log.emplace_back("handler returns");
        }
    };
    (void)waitAnd([&] {
        press(window);
        type(window, 'a', Qt::Key_A);
    });
    handleHeldEvents();
    EXPECT_THAT(log, ElementsAre("press", "handler returns", "key a", "key b"));
}

TEST_F(QtWaitingTest, ARequestToCloseEndsTheWaitAndIsDeliveredAfterwards) {
    NotingWindow window(log);
    const auto begin = loop.now();
    EXPECT_EQ(waitAnd([&] { window.close(); }, 1h), Outcome::ended);
    EXPECT_LT(loop.now() - begin, 1s);
    EXPECT_THAT(log, IsEmpty());
    handleHeldEvents();
    EXPECT_THAT(log, ElementsAre("close"));
}

TEST_F(QtWaitingTest, ARequestToCloseIsDeliveredBeforeOtherHeldInput) {
    NotingWindow window(log);
    (void)waitAnd(
        [&] {
            press(window);
            window.close();
        },
        1h);
    handleHeldEvents();
    EXPECT_THAT(log, ElementsAre("close", "press"));
}

TEST_F(QtWaitingTest, FurtherWaitsEndEarlyAfterARequestToClose) {
    NotingWindow window(log);
    (void)waitAnd([&] { window.close(); }, 1h);
    const auto begin = loop.now();
    const Completion never;
    for (int further = 0; further < 20; ++further) {
        EXPECT_EQ(waiting.wait(never, 1h), Outcome::ended);
    }
    EXPECT_LT(loop.now() - begin, 1s) << "all further waits together must take less than 1 s";
    Completion done;
    done.complete();
    EXPECT_EQ(waiting.wait(done, 1h), Outcome::done)
        << "a wait for completed work must return Outcome::done";
    handleHeldEvents();
    EXPECT_EQ(waiting.wait(never, 60ms), Outcome::late)
        << "after the window has ignored the request, a wait must last for its bound";
}

TEST_F(QtWaitingTest, ASignalEndsTheWaitAndIsHandledBeforeHeldInput) {
    NotingWindow window(log);
    const EndRequests requests([&] { log.emplace_back("end"); }, [] {});
    EXPECT_EQ(waitAnd(
                  [&] {
                      press(window);
                      ::raise(SIGTERM);
                  },
                  1h),
              Outcome::ended);
    EXPECT_THAT(log, IsEmpty());
    handleHeldEvents();
    EXPECT_THAT(log, ElementsAre("end", "press"));
}

} // namespace
} // namespace sonarith
