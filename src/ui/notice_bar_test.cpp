// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/notice_bar.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace sonarith {
namespace {

class NoticeBarTest : public testing::Test {
  protected:
    NoticeBarTest() {
        auto* rows = new QVBoxLayout(&window);
        rows->addWidget(&focused);
        rows->addWidget(bar);
        window.resize(300, 100);
        window.show();
        focused.setFocus();
        QCoreApplication::processEvents();
    }
    QLabel& line() { return *bar->findChild<QLabel*>("notice"); }
    QToolButton& button(const char* name) { return *bar->findChild<QToolButton*>(name); }

    QWidget window;
    QLineEdit focused{&window};
    NoticeBar* bar = new NoticeBar(&window);
};

TEST_F(NoticeBarTest, IsHiddenUntilThereIsANotice) {
    EXPECT_FALSE(bar->isVisible());
    bar->show("Track 2 was not saved");
    EXPECT_TRUE(bar->isVisible());
    EXPECT_EQ(line().accessibleName(), "Track 2 was not saved");
}

TEST_F(NoticeBarTest, ALongNoticeIsShortenedButCompleteInTheToolTipAndForScreenReaders) {
    const QString text = "Track 2 was not saved: " + QString(200, 'x');
    bar->show(text);
    QCoreApplication::processEvents();
    EXPECT_NE(line().text(), text);
    EXPECT_TRUE(line().text().startsWith("Track 2"));
    EXPECT_EQ(line().toolTip(), text);
    EXPECT_EQ(line().accessibleName(), text);
    EXPECT_LE(bar->minimumSizeHint().width(), 200);
}

TEST_F(NoticeBarTest, CountsTheNoticesSinceItWasDismissed) {
    bar->show("one");
    bar->show("two");
    EXPECT_EQ(line().accessibleName(), "(2) two");
    QTest::mouseClick(&button("noticeDismiss"), Qt::LeftButton);
    EXPECT_FALSE(bar->isVisible());
    bar->show("three");
    EXPECT_EQ(line().accessibleName(), "three");
}

TEST_F(NoticeBarTest, LeavesTheFocusWhereItIs) {
    bar->show("one");
    QTest::mouseClick(&button("noticeDetails"), Qt::LeftButton);
    EXPECT_TRUE(focused.hasFocus());
    QTest::mouseClick(&button("noticeDismiss"), Qt::LeftButton);
    EXPECT_TRUE(focused.hasFocus());
}

TEST_F(NoticeBarTest, TheDetailsButtonRequestsTheDetailsAndDoesNotHideTheBar) {
    int requests = 0;
    bar->show("one");
    QTest::mouseClick(&button("noticeDetails"), Qt::LeftButton);
    bar->onDetails = [&] {
        ++requests;
    };
    QTest::mouseClick(&button("noticeDetails"), Qt::LeftButton);
    EXPECT_EQ(requests, 1);
    EXPECT_TRUE(bar->isVisible());
}

} // namespace
} // namespace sonarith
