// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/notice_board.h"

#include <gmock/gmock.h>

#include <thread>

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct NoticeBoardTest : testing::Test {
    NoticeBoard board;
    std::vector<std::string> posted;

    NoticeBoardTest() {
        board.setOnPosted([this](const std::string& text) { posted.push_back(text); });
    }
};

TEST_F(NoticeBoardTest, KeepsReportsInOrder) {
    board.report({"a"});
    board.report({"b"});
    EXPECT_THAT(board.texts(), ElementsAre("a", "b"));
    EXPECT_THAT(posted, ElementsAre("a", "b"));
}

TEST_F(NoticeBoardTest, PostsOnlyTheFirstNoticeOfAnUnsettledCause) {
    board.report({"lost", "output"});
    board.report({"lost again", "output"});
    board.report({"not written", "store"});
    EXPECT_THAT(posted, ElementsAre("lost", "not written"));
}

TEST_F(NoticeBoardTest, PostsTheNextNoticeOfASettledCause) {
    board.report({"lost", "output"});
    board.settled("output", "back");
    board.report({"lost again", "output"});
    EXPECT_THAT(posted, ElementsAre("lost", "back", "lost again"));
}

TEST_F(NoticeBoardTest, SettlingPostsNothingForAnUnreportedCauseOrWithAnEmptyText) {
    board.settled("output", "back");
    EXPECT_THAT(posted, IsEmpty());
    board.report({"lost", "output"});
    board.settled("output", "");
    EXPECT_THAT(posted, ElementsAre("lost"));
}

TEST_F(NoticeBoardTest, PostsEveryNoticeThatHasNoCause) {
    board.report({"a"});
    board.report({"a"});
    EXPECT_THAT(posted, ElementsAre("a", "a"));
}

TEST_F(NoticeBoardTest, KeepsTheLastHundredTexts) {
    for (int i = 0; i < 150; ++i) {
        board.report({std::to_string(i)});
    }
    const std::vector<std::string> kept = board.texts();
    EXPECT_EQ(kept.size(), 100U);
    EXPECT_EQ(kept.front(), "50");
    EXPECT_EQ(kept.back(), "149");
}

TEST_F(NoticeBoardTest, AcceptsReportsFromSeveralThreads) {
    board.setOnPosted(nullptr);
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([this] {
            for (int i = 0; i < 1000; ++i) {
                board.report({"text", i % 2 == 0 ? "cause" : ""});
                board.settled("cause", "");
            }
        });
    }
    threads.clear();
    EXPECT_EQ(board.texts().size(), 100U);
}

} // namespace
} // namespace sonarith
