// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/dialog_loop.h"

#include <functional>

#include <QCloseEvent>
#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>

namespace sonarith {
namespace {

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
    int clicks = 0;
    int closes = 0;
    QPushButton button{this};
};

/// Runs `dialog`, and `act` while it is up, before it is accepted.
int runAnd(QDialog& dialog, const std::function<void()>& act) {
    QTimer::singleShot(0, &dialog, [&] {
        act();
        dialog.accept();
    });
    return runDialog(dialog);
}

TEST(RunDialog, GivesTheDialogsResult) {
    QDialog dialog;
    QTimer::singleShot(0, &dialog, [&] { dialog.done(7); });
    EXPECT_EQ(runDialog(dialog), 7);
    EXPECT_EQ(runningDialog(), nullptr);
}

TEST(RunDialog, OtherWindowsGetNoMouseAndNoKeysMeanwhile) {
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

TEST(RunDialog, OtherWindowsCanBeClosedMeanwhile) {
    OtherWindow other;
    QDialog dialog;
    (void)runAnd(dialog, [&] { other.close(); });
    EXPECT_EQ(other.closes, 1);
}

TEST(RunDialog, ItsOwnControlsWork) {
    QDialog dialog;
    QPushButton button(&dialog);
    int clicks = 0;
    QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
    (void)runAnd(dialog, [&] { QTest::mouseClick(&button, Qt::LeftButton); });
    EXPECT_EQ(clicks, 1);
}

TEST(RunDialog, OfTwoTheLaterOneAloneTakesInput) {
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

} // namespace
} // namespace sonarith
