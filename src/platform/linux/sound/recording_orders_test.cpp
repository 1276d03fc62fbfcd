// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/recording_orders.h"

#include <gmock/gmock.h>

#include <thread>

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

const Error noFolder{ErrorNumber::pathNotFound, "there is none"};
const auto nothing = [] {
};

class RecordingOrdersTest : public testing::Test {
  protected:
    std::shared_ptr<PendingSaves> saves = std::make_shared<PendingSaves>();
    RecordingOrders orders{3, saves};
};

TEST_F(RecordingOrdersTest, ReportThatTheFileWasCreated) {
    EXPECT_FALSE(orders.begunWithin(0ms));
    ASSERT_TRUE(orders.tries(0, 0));
    ASSERT_TRUE(orders.tries(0, 1));
    EXPECT_EQ(orders.candidate(), 1U);
    ASSERT_TRUE(orders.begins(0, nothing));
    EXPECT_TRUE(orders.begunWithin(0ms)->ok());
}

TEST_F(RecordingOrdersTest, ReportThatNoFileCouldBeCreated) {
    ASSERT_TRUE(orders.fails(0, noFolder, nothing));
    ASSERT_FALSE(orders.begunWithin(0ms)->ok());
    EXPECT_EQ(orders.begunWithin(0ms)->error().text, "there is none");
}

TEST_F(RecordingOrdersTest, ReplaceAHangingWriterIfAFurtherFolderIsLeft) {
    ASSERT_TRUE(orders.tries(0, 0));
    const auto first = orders.replaceWithin(1ms);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->hanging, 0U);
    EXPECT_FALSE(orders.tries(0, 1)) << "writer 0 was replaced, so its turn must be over";
    EXPECT_FALSE(orders.begins(0, [] { ADD_FAILURE(); }));
    EXPECT_FALSE(orders.fails(0, noFolder, [] { ADD_FAILURE(); }));
    ASSERT_TRUE(orders.tries(first->turn, 1));
    const auto second = orders.replaceWithin(1ms);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->hanging, 1U);
    ASSERT_TRUE(orders.tries(second->turn, 2));
    EXPECT_FALSE(orders.replaceWithin(1ms))
        << "the writer must not be replaced, because there is no further folder";
    EXPECT_TRUE(orders.begins(second->turn, nothing));
}

TEST_F(RecordingOrdersTest, DoNotReplaceAWriterAfterTheFileWasCreatedOrAfterClose) {
    ASSERT_TRUE(orders.begins(0, nothing));
    EXPECT_FALSE(orders.replaceWithin(1ms));
    RecordingOrders closed(3, nullptr);
    closed.close();
    EXPECT_FALSE(closed.replaceWithin(1ms));
    EXPECT_FALSE(closed.tries(0, 0));
}

TEST_F(RecordingOrdersTest, GiveEachFolderTheFullTime) {
    // Together the two folders take 1.4 s, longer than the limit of 1.2 s for one folder. If the
    // code is correct, the test fails only if the machine delays a thread by half a second.
    std::thread writer([this] {
        for (std::size_t candidate = 0; candidate < 2; ++candidate) {
            EXPECT_TRUE(orders.tries(0, candidate));
            std::this_thread::sleep_for(700ms);
        }
        EXPECT_TRUE(orders.begins(0, nothing));
    });
    EXPECT_FALSE(orders.replaceWithin(1200ms));
    writer.join();
}

TEST_F(RecordingOrdersTest, PassASaveToTheWriterAndReturnItsOutcome) {
    std::thread writer([this] {
        EXPECT_EQ(orders.nextSave(), fs::path("/a.wav"));
        orders.saved({}, nothing);
        EXPECT_EQ(orders.nextSave(), fs::path("/b.wav"));
        orders.saved(noFolder, nothing);
        EXPECT_FALSE(orders.nextSave());
        orders.finished();
    });
    EXPECT_TRUE(orders.saveWithin(30s, "/a.wav")->ok());
    EXPECT_FALSE(orders.saveWithin(30s, "/b.wav")->ok());
    EXPECT_FALSE(orders.close()) << "both saves are complete, so no save may be pending";
    EXPECT_TRUE(orders.abandoned());
    EXPECT_TRUE(orders.finishedWithin(30s));
    writer.join();
}

TEST_F(RecordingOrdersTest, KeepTheResultOfALateSaveForTheNextCallWithTheSameName) {
    EXPECT_FALSE(orders.saveWithin(1ms, "/a.wav"));
    EXPECT_FALSE(saves->awaitNone(0ms));
    EXPECT_EQ(orders.saveWithin(1ms, "/b.wav")->error().number, ErrorNumber::deviceUnavailable);
    EXPECT_EQ(orders.nextSave(), fs::path("/a.wav"));
    bool notified = false;
    orders.saved({}, [&] { notified = true; });
    EXPECT_TRUE(notified);
    EXPECT_TRUE(saves->awaitNone(0ms));
    EXPECT_TRUE(orders.saveWithin(0ms, "/a.wav")->ok())
        << "the result of the late save must be returned";
    EXPECT_TRUE(saves->awaitNone(0ms));
    EXPECT_FALSE(orders.saveWithin(0ms, "/a.wav"))
        << "the result was already returned, so this call must order a new save";
}

TEST_F(RecordingOrdersTest, LetTheWriterCompleteAnOrderedSaveAfterClose) {
    EXPECT_FALSE(orders.saveWithin(0ms, "/a.wav"));
    EXPECT_TRUE(orders.close());
    EXPECT_FALSE(orders.abandoned());
    EXPECT_TRUE(orders.tries(0, 0)) << "the writer must still be able to create the file";
    EXPECT_TRUE(orders.begins(0, nothing));
    EXPECT_EQ(orders.nextSave(), fs::path("/a.wav"));
    orders.saved({}, nothing);
    EXPECT_FALSE(orders.nextSave());
    EXPECT_TRUE(orders.abandoned());
}

TEST_F(RecordingOrdersTest, ReportOnlyALateSave) {
    int late = 0;
    orders.watchSave(0ms, [&] { ++late; });
    EXPECT_EQ(late, 0) << "no save is running, so this call must not report one as late";
    EXPECT_FALSE(orders.saveWithin(0ms, "/a.wav"));
    orders.watchSave(0ms, [&] { ++late; });
    EXPECT_EQ(late, 1);
    orders.saved({}, nothing);
    orders.watchSave(0ms, [&] { ++late; });
    EXPECT_EQ(late, 1);
}

} // namespace
} // namespace sonarith::sound
