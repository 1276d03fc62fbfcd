// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_message_boxes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMainWindow>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>

#include "platform/qt/dialog_loop.h"
#include "support/must_run.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

class QtMessageBoxesTest : public testing::Test {
  protected:
    /// Runs `act` on the next box when that box is open; then cancels the box if it is still open.
    void onBox(std::function<void(QMessageBox&)> act) {
        const std::function<void()> onTimer = test::mustRun([act = std::move(act)] {
            auto* box = qobject_cast<QMessageBox*>(runningDialog());
            ASSERT_NE(box, nullptr);
            act(*box);
            if (box->isVisible()) {
                box->done(QMessageBox::Cancel);
            }
        });
        // The timer belongs to `context`, so that it is destroyed before the test ends.
        auto* timer = new QTimer(&context);
        timer->setSingleShot(true);
        QObject::connect(timer, &QTimer::timeout, &context, onTimer);
        timer->start(0);
    }

    QObject context;
    QtMessageBoxes boxes{"Sonarith v2.0"};
};

TEST_F(QtMessageBoxesTest, ShowsTheTextUnderTheDefaultTitle) {
    QString title;
    QString text;
    onBox([&](QMessageBox& box) {
        title = box.windowTitle();
        text = box.text();
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        QTest::keyClick(&box, Qt::Key_Return);
    });
    EXPECT_EQ(boxes.show("c:\\<b>Größe</b>.wav"), BoxAnswer::ok);
    EXPECT_EQ(title.toStdString(), "Sonarith v2.0");
    EXPECT_EQ(text.toStdString(), "c:\\<b>Größe</b>.wav");
}

TEST_F(QtMessageBoxesTest, ShowsTheTitleThatTheCallerPasses) {
    QString title;
    onBox([&](QMessageBox& box) {
        title = box.windowTitle();
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    EXPECT_EQ(boxes.show("Text", BoxIcon::exclamation, BoxButtons::ok, "SETUP"), BoxAnswer::ok);
    EXPECT_EQ(title.toStdString(), "SETUP");
}

TEST_F(QtMessageBoxesTest, EachIconIsShown) {
    std::vector<QMessageBox::Icon> shown;
    for (const BoxIcon icon : {BoxIcon::none, BoxIcon::critical, BoxIcon::warning,
                               BoxIcon::exclamation, BoxIcon::information}) {
        onBox([&](QMessageBox& box) {
            shown.push_back(box.icon());
            QTest::keyClick(&box, Qt::Key_Return);
        });
        boxes.show("Text", icon);
    }
    EXPECT_THAT(shown, ElementsAre(QMessageBox::NoIcon, QMessageBox::Critical, QMessageBox::Warning,
                                   QMessageBox::Warning, QMessageBox::Information));
}

TEST_F(QtMessageBoxesTest, AQuestionIsAnsweredByEachOfItsButtons) {
    const std::pair<QMessageBox::StandardButton, BoxAnswer> answers[] = {
        {QMessageBox::Yes, BoxAnswer::yes},
        {QMessageBox::No, BoxAnswer::no},
        {QMessageBox::Cancel, BoxAnswer::cancel},
    };
    for (const auto& [button, answer] : answers) {
        onBox([&](QMessageBox& box) {
            ASSERT_NE(box.button(button), nullptr);
            QTest::mouseClick(box.button(button), Qt::LeftButton);
        });
        EXPECT_EQ(boxes.show("Sure?", BoxIcon::none, BoxButtons::yesNoCancel), answer);
    }
}

TEST_F(QtMessageBoxesTest, EscapeCancelsAQuestion) {
    onBox([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(boxes.show("Sure?", BoxIcon::none, BoxButtons::yesNoCancel), BoxAnswer::cancel);
}

TEST_F(QtMessageBoxesTest, TheMainWindowIsTheParentOfABox) {
    QMainWindow mainWindow;
    mainWindow.show();
    QCoreApplication::processEvents();
    onBox([&](QMessageBox& box) { EXPECT_EQ(box.parentWidget(), &mainWindow); });
    boxes.show("Text");
}

TEST_F(QtMessageBoxesTest, EventsAreHandledWhileTheBoxIsOpen) {
    int ticks = 0;
    QTimer ticking;
    QObject::connect(&ticking, &QTimer::timeout, [&] {
        auto* box = qobject_cast<QMessageBox*>(runningDialog());
        if (box && ++ticks == 3) {
            box->button(QMessageBox::Ok)->click();
        }
    });
    ticking.start(1);
    boxes.show("Wait");
    EXPECT_EQ(ticks, 3);
}

} // namespace
} // namespace sonarith
