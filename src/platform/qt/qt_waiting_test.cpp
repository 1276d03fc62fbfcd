// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_waiting.h"

#include <csignal>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <QApplication>
#include <QCloseEvent>
#include <QDBusVirtualObject>
#include <QMimeData>
#include <QShortcut>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QWidget>
#include <QWindow>
#include <gmock/gmock.h>

#include "platform/qt/end_requests.h"
#include "platform/qt/qt_event_loop.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Outcome = Waiting::Outcome;

/// A window that logs the input and other events that it receives, and counts how often it is
/// painted.
class NotingWindow : public QWidget {
  public:
    explicit NotingWindow(std::vector<std::string>& log, std::string name = "")
        : log_(log), name_(std::move(name)) {
        setAcceptDrops(true);
        resize(100, 100);
        show();
        QCoreApplication::processEvents();
        paints = 0;
        log_.clear();
    }
    int paints = 0;
    std::function<void()> onPress = [] {
    };

  protected:
    void paintEvent(QPaintEvent*) override { ++paints; }
    void mousePressEvent(QMouseEvent*) override {
        note("press");
        onPress();
    }
    void mouseReleaseEvent(QMouseEvent*) override { note("release"); }
    void keyPressEvent(QKeyEvent* event) override { note("key " + event->text().toStdString()); }
    void wheelEvent(QWheelEvent*) override { note("wheel"); }
    void resizeEvent(QResizeEvent* event) override {
        note("resize " + std::to_string(event->size().width()));
    }
    void closeEvent(QCloseEvent* event) override {
        note("close");
        event->ignore();
    }
    void dragEnterEvent(QDragEnterEvent* event) override {
        note("drag enters");
        event->acceptProposedAction();
    }
    void dropEvent(QDropEvent* event) override {
        note("drop " + event->mimeData()->urls().value(0).toLocalFile().toStdString());
    }

  private:
    void note(const std::string& what) { log_.push_back(name_ + what); }

    std::vector<std::string>& log_;
    std::string name_;
};

// The following functions simulate events of the window system, as far as the offscreen platform
// allows.
void press(QWidget& window, QEvent::Type type = QEvent::MouseButtonPress) {
    const bool down = type != QEvent::MouseButtonRelease;
    qt_handleMouseEvent(window.windowHandle(), {5, 5}, window.mapToGlobal(QPoint(5, 5)),
                        down ? Qt::LeftButton : Qt::NoButton, Qt::LeftButton, type, {}, 0);
}
void type(QWidget& window, char letter, int key) {
    const QString text = QChar::fromLatin1(letter);
    qt_handleKeyEvent(window.windowHandle(), QEvent::KeyPress, key, {}, text);
    qt_handleKeyEvent(window.windowHandle(), QEvent::KeyRelease, key, {}, text);
}
void dropFile(QWidget& window, const QString& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window.windowHandle(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDragMoveEvent move({6, 6}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window.windowHandle(), &move);
    QDropEvent drop({6, 6}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window.windowHandle(), &drop);
    EXPECT_TRUE(drop.isAccepted());
}

class QtWaitingTest : public testing::Test {
  protected:
    /// Runs `act` once the event loop, or a wait that paints, handles events.
    void soon(std::function<void()> act) {
        QMetaObject::invokeMethod(&context, std::move(act), Qt::QueuedConnection);
    }
    /// Waits for work that never completes; `act` runs during the wait.
    Outcome waitAnd(std::function<void()> act, Waiting::Duration bound = 150ms) {
        soon(std::move(act));
        const Completion never;
        return waiting.wait(never, bound);
    }
    /// Handles events until all held events have been delivered; their handlers may wait.
    void handleHeldEvents() {
        for (int i = 0; i < 50; ++i) {
            loop.waitFor(1ms);
        }
    }

    QtEventLoop loop;
    QtWaiting waiting;
    QObject context;
    std::vector<std::string> log;
};

TEST_F(QtWaitingTest, AShortWaitHandlesNoEventWhetherOrNotTheWorkCompletes) {
    bool handled = false;
    soon([&] { handled = true; });
    Completion done;
    std::thread worker([&] { done.complete(); });
    EXPECT_EQ(waiting.wait(done, 1h), Outcome::done);
    worker.join();
    EXPECT_FALSE(handled);
    const Completion never;
    EXPECT_EQ(waiting.wait(never, Waiting::plainMoment), Outcome::late);
    EXPECT_FALSE(handled) << "a wait with a short bound has handled an event";
    loop.yield();
}

TEST_F(QtWaitingTest, EndsWhenTheWorkCompletes) {
    Completion done;
    std::thread worker([&] {
        std::this_thread::sleep_for(100ms);
        done.complete();
    });
    EXPECT_EQ(waiting.wait(done, 1h), Outcome::done);
    worker.join();
}

TEST_F(QtWaitingTest, TheOutcomeIsLateWhenTheBoundHasPassed) {
    const auto begin = loop.now();
    EXPECT_EQ(waitAnd([] {}, 120ms), Outcome::late);
    EXPECT_GE(loop.now() - begin, 119ms); // now() is truncated to whole milliseconds
}

TEST_F(QtWaitingTest, PaintsWindowsDuringAWait) {
    NotingWindow window(log);
    window.update();
    (void)waitAnd([&] { QTimer::singleShot(0, &context, [&] { window.update(); }); });
    EXPECT_GE(window.paints, 2) << "a change from before or during the wait was not painted";
}

TEST_F(QtWaitingTest, ShowsTheHourglassDuringAWait) {
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    (void)waitAnd([] {
        ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
        EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    });
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

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

TEST_F(QtWaitingTest, ATouchIsNotAcceptedAndItsClickIsNotDeliveredDuringAWait) {
    NotingWindow window(log);
    std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    (void)waitAnd([&] {
        const QPointF at = window.mapToGlobal(QPointF(5, 5));
        const auto touch = [&](QEvent::Type type, QEventPoint::State state) {
            QTouchEvent event(type, screen.get(), {}, {{1, state, at, at}});
            QCoreApplication::sendEvent(window.windowHandle(), &event);
            EXPECT_FALSE(event.isAccepted())
                << "Qt converts only unaccepted touches to mouse events";
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

TEST_F(QtWaitingTest, InputDuringAHandlersYieldIsQueuedAfterHeldInput) {
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

TEST_F(QtWaitingTest, DueTimersFireOnceAfterAWait) {
    int ticks = 0;
    const auto timer = loop.every(10ms, [&] { ++ticks; });
    int once = 0;
    QTimer::singleShot(1ms, &context, [&] { ++once; });
    (void)waitAnd([] {}, 200ms);
    EXPECT_EQ(ticks, 0);
    EXPECT_EQ(once, 0);
    loop.yield();
    EXPECT_EQ(ticks, 1) << "a due timer must fire once, at the first yield";
    EXPECT_EQ(once, 1);
}

TEST_F(QtWaitingTest, ARequestToCloseAWindowEndsTheWaitAndIsDeliveredWhenTheLoopContinues) {
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

TEST_F(QtWaitingTest, AfterARequestToCloseFurtherWaitsEndEarlyUntilTheLoopContinues) {
    NotingWindow window(log);
    (void)waitAnd([&] { window.close(); }, 1h);
    const auto begin = loop.now();
    const Completion never;
    for (int further = 0; further < 20; ++further) {
        EXPECT_EQ(waiting.wait(never, 1h), Outcome::ended);
    }
    EXPECT_LT(loop.now() - begin, 1s) << "all further waits together took too long";
    Completion done;
    done.complete();
    EXPECT_EQ(waiting.wait(done, 1h), Outcome::done) << "completed work was not accepted";
    handleHeldEvents();
    EXPECT_EQ(waiting.wait(never, 60ms), Outcome::late)
        << "the window ignored the close, so a wait must last for its bound again";
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

/// Simulates Qt's bridge to assistive programs, through which such a program can press buttons.
class Bridge : public QDBusVirtualObject {
  public:
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage&, const QDBusConnection&) override { return false; }
};

TEST_F(QtWaitingTest, ACallFromAnAssistiveProgramRunsNoHandlerDuringAWait) {
    Bridge bridge;
    int calls = 0;
    QMetaObject::invokeMethod(
        &bridge, [&] { ++calls; }, Qt::QueuedConnection);
    (void)waitAnd([] {});
    EXPECT_EQ(calls, 0);
    handleHeldEvents();
    QMetaObject::invokeMethod(
        &bridge, [&] { ++calls; }, Qt::QueuedConnection);
    handleHeldEvents();
    EXPECT_EQ(calls, 1) << "a call outside of a wait was not handled";
}

TEST_F(QtWaitingTest, CanWaitAgainAfterAWaitHasEnded) {
    EXPECT_EQ(waitAnd([] {}), Outcome::late);
    EXPECT_EQ(waitAnd([] {}), Outcome::late);
}

#ifndef NDEBUG
TEST_F(QtWaitingTest, ANestedWaitIsAProgrammingError) {
    EXPECT_DEATH((void)waitAnd([&] {
                     const Completion never;
                     (void)waiting.wait(never, 60ms);
                 }),
                 "no handler runs during a wait");
}
#endif

} // namespace
} // namespace sonarith
