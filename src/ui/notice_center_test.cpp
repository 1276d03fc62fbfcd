// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/notice_center.h"

#include <QCoreApplication>
#include <QStringList>
#include <gtest/gtest.h>

#include <thread>

namespace sonarith {
namespace {

struct NoticeCenterTest : testing::Test {
    NoticeBoard board;
    QWidget window;
    NoticeBar bar{&window};
    QStringList notified;
    NoticeCenter center{board, window, bar, [this](const QString& text) {
                            notified << text;
                        }};
};

TEST_F(NoticeCenterTest, ANoticeFromAnotherThreadIsShownInTheBar) {
    window.show();
    std::jthread([this] { board.report({"lost"}); }).join();
    EXPECT_FALSE(bar.isVisible());
    QCoreApplication::processEvents();
    EXPECT_TRUE(bar.isVisible());
    EXPECT_EQ(bar.text(), "lost");
    EXPECT_TRUE(notified.isEmpty());
}

TEST_F(NoticeCenterTest, ANoticeIsSentToTheDesktopWhileTheWindowIsHiddenOrMinimized) {
    board.report({"hidden"});
    QCoreApplication::processEvents();
    window.showMinimized();
    board.report({"minimized"});
    QCoreApplication::processEvents();
    EXPECT_EQ(notified, QStringList({"hidden", "minimized"}));
    EXPECT_FALSE(bar.isVisibleTo(&window));
}

} // namespace
} // namespace sonarith
