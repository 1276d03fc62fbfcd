// SPDX-License-Identifier: GPL-3.0-or-later
// For tests of QtWaiting only: a fixture, a window that logs its input, and functions that simulate
// input.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <QCloseEvent>
#include <QCoreApplication>
#include <QMimeData>
#include <QTest>
#include <QUrl>
#include <QWidget>
#include <QWindow>
#include <gtest/gtest.h>

#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_waiting.h"

namespace sonarith {

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
inline void press(QWidget& window, QEvent::Type type = QEvent::MouseButtonPress) {
    const bool down = type != QEvent::MouseButtonRelease;
    qt_handleMouseEvent(window.windowHandle(), {5, 5}, window.mapToGlobal(QPoint(5, 5)),
                        down ? Qt::LeftButton : Qt::NoButton, Qt::LeftButton, type, {}, 0);
}
inline void type(QWidget& window, char letter, int key) {
    const QString text = QChar::fromLatin1(letter);
    qt_handleKeyEvent(window.windowHandle(), QEvent::KeyPress, key, {}, text);
    qt_handleKeyEvent(window.windowHandle(), QEvent::KeyRelease, key, {}, text);
}
inline void dropFile(QWidget& window, const QString& path) {
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
    /// Runs `act` one time, when the event loop or a wait of `waiting` next handles events.
    void soon(std::function<void()> act) {
        QMetaObject::invokeMethod(&context, std::move(act), Qt::QueuedConnection);
    }
    /// Waits for work that never completes; `act` runs during the wait.
    Waiting::Outcome waitAnd(std::function<void()> act,
                             Waiting::Duration bound = std::chrono::milliseconds(150)) {
        const auto ran = std::make_shared<bool>(false);
        soon([ran, act = std::move(act)] {
            *ran = true;
            act();
        });
        const Completion never;
        const Waiting::Outcome outcome = waiting.wait(never, bound);
        EXPECT_TRUE(*ran) << "the wait did not run the action";
        return outcome;
    }
    /// Handles events long enough to deliver all held events (held_events.h), even if their
    /// handlers wait, too.
    void handleHeldEvents() {
        for (int i = 0; i < 50; ++i) {
            loop.waitFor(std::chrono::milliseconds(1));
        }
    }

    QtEventLoop loop;
    QtWaiting waiting;
    QObject context;
    std::vector<std::string> log;
};

} // namespace sonarith
