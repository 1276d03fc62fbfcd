// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/dialog_loop.h"

#include <functional>

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>

namespace sonarith {
namespace {

/// A window that counts the clicks, close requests and pointer movements that it receives.
class OtherWindow : public QWidget {
  public:
    OtherWindow() {
        button.resize(40, 20);
        QObject::connect(&button, &QPushButton::clicked, [this] { ++clicks; });
        show();
    }
    void closeEvent(QCloseEvent* event) override {
        ++closes;
        event->ignore();
    }
    void mouseMoveEvent(QMouseEvent*) override { ++moves; }
    int clicks = 0;
    int closes = 0;
    int moves = 0;
    QPushButton button{this};
};

/// A menu with one entry; counts how often the entry is triggered.
class CountingMenu : public QMenu {
  public:
    explicit CountingMenu(QWidget* parent) : QMenu(parent) {
        addAction(QStringLiteral("Entry"), [this] { ++chosen; });
    }
    void choose() {
        QTest::mouseClick(this, Qt::LeftButton, {},
                          actionGeometry(actions().constFirst()).center());
    }
    int chosen = 0;
};

void moveOver(QWidget& widget) {
    const QPoint at(5, 5);
    QMouseEvent move(QEvent::MouseMove, at, widget.mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &move);
}

/// Runs `dialog` and calls `act` while it is open; then accepts it.
int runAnd(QDialog& dialog, const std::function<void()>& act) {
    QTimer::singleShot(0, &dialog, [&] {
        act();
        dialog.accept();
    });
    return runDialog(dialog);
}

TEST(RunDialog, ReturnsTheDialogsResult) {
    QDialog dialog;
    QTimer::singleShot(0, &dialog, [&] { dialog.done(7); });
    EXPECT_EQ(runDialog(dialog), 7);
    EXPECT_EQ(runningDialog(), nullptr);
}

TEST(RunDialog, OtherWindowsReceiveNoClicksAndNoKeysWhileTheDialogRuns) {
    OtherWindow other;
    QDialog dialog;
    (void)runAnd(dialog, [&] {
        QTest::mouseClick(&other.button, Qt::LeftButton);
        QTest::keyClick(&other.button, Qt::Key_Space);
    });
    EXPECT_EQ(other.clicks, 0);
    QTest::mouseClick(&other.button, Qt::LeftButton);
    EXPECT_EQ(other.clicks, 1);
}

TEST(RunDialog, OtherWindowsReceiveNoPointerMovementsWhileTheDialogRuns) {
    OtherWindow other;
    QDialog dialog;
    (void)runAnd(dialog, [&] { moveOver(other); });
    EXPECT_EQ(other.moves, 0);
    moveOver(other);
    EXPECT_EQ(other.moves, 1);
}

TEST(RunDialog, OnlyShortcutsOfTheDialogWorkWhileTheDialogRuns) {
    OtherWindow other;
    QShortcut otherShortcut(Qt::Key_F10, &other);
    int otherActivations = 0;
    QObject::connect(&otherShortcut, &QShortcut::activated, [&] { ++otherActivations; });
    QDialog dialog;
    QShortcut ownShortcut(Qt::Key_F9, &dialog);
    int ownActivations = 0;
    QObject::connect(&ownShortcut, &QShortcut::activated, [&] { ++ownActivations; });
    (void)runAnd(dialog, [&] {
        // Each window is activated before its key is pressed, because a blocked key press activates
        // the dialog.
        other.activateWindow();
        QCoreApplication::processEvents();
        QTest::keyClick(&other, Qt::Key_F10);
        dialog.activateWindow();
        QCoreApplication::processEvents();
        QTest::keyClick(&dialog, Qt::Key_F9);
    });
    EXPECT_EQ(otherActivations, 0);
    EXPECT_EQ(ownActivations, 1);
    other.activateWindow();
    QCoreApplication::processEvents();
    QTest::keyClick(&other, Qt::Key_F10);
    EXPECT_EQ(otherActivations, 1);
}

TEST(RunDialog, AnOpenMenuIsClosedBeforeTheDialogIsShown) {
    OtherWindow other;
    CountingMenu menu(&other);
    CountingMenu below(&menu);
    menu.popup(QPoint(10, 10));
    below.popup(QPoint(20, 20));
    ASSERT_EQ(QApplication::activePopupWidget(), &below);
    struct Dialog : QDialog {
        void showEvent(QShowEvent*) override { popup = QApplication::activePopupWidget(); }
        QWidget* popup = nullptr;
    };
    Dialog dialog;
    (void)runAnd(dialog, [] {});
    EXPECT_EQ(dialog.popup, nullptr);
    EXPECT_FALSE(menu.isVisible());
}

TEST(RunDialog, WhileTheDialogRunsOnlyItsOwnMenusWork) {
    OtherWindow other;
    CountingMenu theirs(&other);
    QDialog dialog;
    QPushButton button(&dialog);
    CountingMenu own(&button);
    (void)runAnd(dialog, [&] {
        theirs.popup(QPoint(10, 10));
        theirs.choose();
        theirs.close();
        own.popup(QPoint(10, 10));
        own.choose();
    });
    EXPECT_EQ(theirs.chosen, 0);
    EXPECT_EQ(own.chosen, 1);
}

TEST(RunDialog, AListWithoutParentWorksOnlyIfItsFocusProxyBelongsToTheDialog) {
    OtherWindow other;
    QDialog dialog;
    QLineEdit line(&dialog);
    QListWidget ofDialog;
    QListWidget ofOther;
    for (auto [list, proxy] : {std::pair<QListWidget*, QWidget*>{&ofDialog, &line},
                               std::pair<QListWidget*, QWidget*>{&ofOther, &other.button}}) {
        list->setWindowFlag(Qt::Popup);
        list->setFocusProxy(proxy);
        list->addItem(QStringLiteral("Entry"));
    }
    const auto clicksOn = [](QListWidget& list) {
        int clicks = 0;
        QObject::connect(&list, &QListWidget::itemClicked, [&] { ++clicks; });
        list.show();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                          list.visualItemRect(list.item(0)).center());
        list.hide();
        list.disconnect();
        return clicks;
    };
    (void)runAnd(dialog, [&] {
        EXPECT_EQ(clicksOn(ofDialog), 1);
        EXPECT_EQ(clicksOn(ofOther), 0);
    });
}

TEST(RunDialog, APressOnAnotherWindowBringsTheDialogToTheFront) {
    OtherWindow other;
    QDialog dialog;
    (void)runAnd(dialog, [&] {
        for (const bool byKey : {false, true}) {
            other.activateWindow();
            QCoreApplication::processEvents();
            ASSERT_FALSE(dialog.isActiveWindow());
            moveOver(other);
            QCoreApplication::processEvents();
            EXPECT_FALSE(dialog.isActiveWindow())
                << "a pointer movement must not activate the dialog";
            if (byKey) {
                QTest::keyClick(&other.button, Qt::Key_Space);
            } else {
                QTest::mouseClick(&other.button, Qt::LeftButton);
            }
            QCoreApplication::processEvents();
            EXPECT_TRUE(dialog.isActiveWindow());
        }
    });
}

TEST(RunDialog, APressOnAnotherWindowRestoresTheMinimizedDialog) {
    OtherWindow other;
    QDialog dialog;
    (void)runAnd(dialog, [&] {
        dialog.showMinimized();
        ASSERT_TRUE(dialog.isMinimized());
        QTest::mouseClick(&other.button, Qt::LeftButton);
        EXPECT_FALSE(dialog.isMinimized());
    });
}

TEST(RunDialog, EveryWidgetOfAnotherWindowIsNotifiedThatItsWindowIsBlocked) {
    struct Blockable : QWidget {
        explicit Blockable(QWidget* parent) : QWidget(parent) {}
        bool event(QEvent* event) override {
            blocked += event->type() == QEvent::WindowBlocked ? 1 : 0;
            return QWidget::event(event);
        }
        int blocked = 0;
    };
    OtherWindow other;
    Blockable child(&other);
    QDialog dialog;
    (void)runAnd(dialog, [&] { EXPECT_EQ(child.blocked, 1); });
}

TEST(RunDialog, OtherWindowsReceiveCloseRequestsWhileTheDialogRuns) {
    OtherWindow other;
    QDialog dialog;
    (void)runAnd(dialog, [&] { other.close(); });
    EXPECT_EQ(other.closes, 1);
}

TEST(RunDialog, TheDialogsOwnControlsReceiveInput) {
    QDialog dialog;
    QPushButton button(&dialog);
    int clicks = 0;
    QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
    (void)runAnd(dialog, [&] { QTest::mouseClick(&button, Qt::LeftButton); });
    EXPECT_EQ(clicks, 1);
}

TEST(RunDialog, ADialogReceivesNoInputWhileALaterDialogIsOpen) {
    QDialog first;
    QPushButton below(&first);
    int clicks = 0;
    QObject::connect(&below, &QPushButton::clicked, [&] { ++clicks; });
    QDialog second;
    (void)runAnd(first, [&] {
        (void)runAnd(second, [&] {
            EXPECT_EQ(runningDialog(), &second);
            QTest::mouseClick(&below, Qt::LeftButton);
        });
        EXPECT_EQ(clicks, 0);
        EXPECT_EQ(runningDialog(), &first);
        QTest::mouseClick(&below, Qt::LeftButton);
    });
    EXPECT_EQ(clicks, 1);
}

/// Simulates another program that comes to the front.
void leaveNoWindowActive() {
    {
        QWidget passing;
        passing.show();
        passing.activateWindow();
        QCoreApplication::processEvents();
    }
    QCoreApplication::processEvents();
    ASSERT_EQ(QApplication::activeWindow(), nullptr);
}

TEST(DialogParent, IsTheActiveWindow) {
    QMainWindow mainWindow;
    mainWindow.show();
    OtherWindow other;
    other.activateWindow();
    QCoreApplication::processEvents();
    EXPECT_EQ(dialogParent(), &other);
}

TEST(DialogParent, IsTheMainWindowWhileAnotherProgramIsInFront) {
    OtherWindow other;
    QMainWindow mainWindow;
    mainWindow.show();
    leaveNoWindowActive();
    EXPECT_EQ(dialogParent(), &mainWindow);
}

TEST(DialogParent, IsNotAHiddenOrMinimizedWindow) {
    QMainWindow mainWindow;
    leaveNoWindowActive();
    EXPECT_EQ(dialogParent(), nullptr);
    mainWindow.showMinimized();
    leaveNoWindowActive();
    EXPECT_EQ(dialogParent(), nullptr);
    mainWindow.activateWindow();
    QCoreApplication::processEvents();
    EXPECT_EQ(dialogParent(), nullptr);
}

TEST(DialogParent, IsTheRunningDialogWhicheverWindowIsActive) {
    QMainWindow mainWindow;
    mainWindow.show();
    QDialog dialog;
    (void)runAnd(dialog, [&] {
        mainWindow.activateWindow();
        QCoreApplication::processEvents();
        EXPECT_EQ(dialogParent(), &dialog);
    });
    EXPECT_EQ(dialogParent(), &mainWindow);
}

} // namespace
} // namespace sonarith
