// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/tray_hosts.h"

#include <chrono>

#include <QTest>
#include <gmock/gmock.h>

#include "platform/qt/embedding_tray.h"
#include "platform/qt/qt_waiting.h"
#include "support/private_bus.h"

namespace sonarith {
namespace {

using test::NotifierWatcher;
using test::PrivateBus;

constexpr int patienceMilliseconds = 30'000;
/// A reply on an idle bus takes less time than this; a test that expects no change waits this long.
constexpr int quietMilliseconds = 300;

/// A watcher is the service on the session bus with which tray hosts register.
class TrayHostsTest : public testing::Test {
  protected:
    bool becomes(bool present) {
        return QTest::qWaitFor([&] { return hosts.statusNotifier() == present; },
                               patienceMilliseconds);
    }
    bool changesTo(bool present) {
        const int before = changes;
        return becomes(present) && changes == before + 1;
    }

    PrivateBus bus;
    bool embedding = false; ///< whether a panel embeds tray icons as windows
    TrayHosts hosts{{[this] { return bus.connect(); },
                     [this] {
                         return embedding;
                     }}};
    int changes = 0;
    int replacements = 0;
    int replies = 0;
    Connection counted = hosts.changed.connect([this] { ++changes; });
    Connection countedToo = hosts.watcherReplaced.connect([this] { ++replacements; });
    Connection countedReplies = hosts.replied.connect([this] { ++replies; });
};

TEST_F(TrayHostsTest, DetectsNoHostBeforeItWatchesTheBus) {
    NotifierWatcher watcher(bus);
    watcher.setHost(true);
    QTest::qWait(quietMilliseconds);
    EXPECT_FALSE(hosts.statusNotifier());
    EXPECT_EQ(watcher.questions(), 0);
}

TEST_F(TrayHostsTest, FindsAnExistingHost) {
    NotifierWatcher watcher(bus);
    watcher.setHost(true);
    hosts.watchBus();
    EXPECT_FALSE(hosts.statusNotifier()); // watchBus() does not wait for the reply
    EXPECT_TRUE(changesTo(true));
    hosts.watchBus();
    QTest::qWait(quietMilliseconds);
    EXPECT_EQ(watcher.questions(), 1);
}

TEST_F(TrayHostsTest, AWatcherWithoutAHostCountsAsNoHost) {
    NotifierWatcher watcher(bus);
    hosts.watchBus();
    QTest::qWait(quietMilliseconds);
    EXPECT_FALSE(hosts.statusNotifier());
    watcher.setHost(true);
    EXPECT_TRUE(changesTo(true));
    watcher.setHost(false);
    EXPECT_TRUE(changesTo(false));
}

TEST_F(TrayHostsTest, DetectsThatAHostAppearsDisappearsAndReappears) {
    hosts.watchBus();
    QTest::qWait(quietMilliseconds);
    EXPECT_FALSE(hosts.statusNotifier());
    NotifierWatcher watcher(bus);
    watcher.setHost(true);
    EXPECT_TRUE(becomes(true));
    watcher.leave();
    EXPECT_TRUE(changesTo(false));
    watcher.comeBack();
    EXPECT_TRUE(changesTo(true));
}

TEST_F(TrayHostsTest, AHostIsStillPresentAfterOneOfSeveralHostsDisappears) {
    NotifierWatcher watcher(bus);
    watcher.setHost(true);
    hosts.watchBus();
    ASSERT_TRUE(becomes(true));
    const int before = watcher.questions();
    watcher.loseOneOfSeveralHosts();
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return watcher.questions() > before; }, patienceMilliseconds));
    QTest::qWait(quietMilliseconds);
    EXPECT_TRUE(hosts.statusNotifier());
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(replacements, 0);
}

TEST_F(TrayHostsTest, AWatcherThatReplacesAnotherIsQueriedAndReported) {
    NotifierWatcher first(bus);
    NotifierWatcher second(bus);
    first.setHost(true);
    second.setHost(true);
    hosts.watchBus();
    ASSERT_TRUE(becomes(true));
    EXPECT_EQ(second.questions(), 0);
    first.leave();
    ASSERT_TRUE(QTest::qWaitFor([&] { return second.questions() > 0; }, patienceMilliseconds));
    EXPECT_EQ(replacements, 1);
    EXPECT_TRUE(hosts.statusNotifier());
    EXPECT_EQ(changes, 1);
    second.leave();
    EXPECT_TRUE(changesTo(false));
    EXPECT_EQ(replacements, 1);
}

TEST_F(TrayHostsTest, NoHostIsPresentAfterAWatcherWithoutAHostReplacesAnother) {
    NotifierWatcher first(bus);
    const NotifierWatcher second(bus);
    first.setHost(true);
    hosts.watchBus();
    ASSERT_TRUE(becomes(true));
    first.leave();
    EXPECT_TRUE(changesTo(false));
    EXPECT_EQ(replacements, 1);
}

TEST_F(TrayHostsTest, AWatcherThatHangsCountsAsNoHostUntilItReplies) {
    NotifierWatcher watcher(bus, NotifierWatcher::Manner::hangs);
    watcher.setHost(true);
    hosts.watchBus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return watcher.questions() > 0; }, patienceMilliseconds));
    QTest::qWait(quietMilliseconds);
    EXPECT_FALSE(hosts.statusNotifier());
    watcher.wakeUp();
    EXPECT_TRUE(changesTo(true));
}

TEST_F(TrayHostsTest, NoHostIsPresentAfterTheBusConnectionIsLost) {
    NotifierWatcher watcher(bus);
    watcher.setHost(true);
    hosts.watchBus();
    ASSERT_TRUE(becomes(true));
    bus.kill();
    EXPECT_TRUE(changesTo(false));
}

TEST_F(TrayHostsTest, DetectsNoHostWithoutABus) {
    bus.kill();
    hosts.watchBus();
    QTest::qWait(quietMilliseconds);
    EXPECT_FALSE(hosts.statusNotifier());
    EXPECT_EQ(changes, 0);
}

TEST_F(TrayHostsTest, ABusThatDoesNotReplyCountsAsHangingUntilItReplies) {
    NotifierWatcher watcher(bus);
    watcher.setHost(true);
    hosts.watchBus();
    ASSERT_TRUE(becomes(true));
    ASSERT_EQ(replies, 1);
    bus.freeze();
    hosts.requestReply();
    EXPECT_FALSE(hosts.hangs());
    ASSERT_TRUE(QTest::qWaitFor([&] { return hosts.hangs(); }, patienceMilliseconds));
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(replies, 1);
    bus.thaw();
    ASSERT_TRUE(QTest::qWaitFor([&] { return replies == 2; }, patienceMilliseconds));
    EXPECT_FALSE(hosts.hangs());
    EXPECT_TRUE(hosts.statusNotifier());
    EXPECT_EQ(changes, 3);
}

TEST_F(TrayHostsTest, AReplyThatArrivesDuringAWaitIsHandledAfterTheWait) {
    hosts.watchBus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return replies == 1; }, patienceMilliseconds));
    // Without a watcher, the bus itself replies. The wait is longer than the limit for a reply.
    hosts.requestReply();
    QtWaiting waiting;
    const Completion never;
    EXPECT_EQ(waiting.wait(never, std::chrono::milliseconds(1500)), Waiting::Outcome::late);
    EXPECT_EQ(replies, 1) << "nothing must be handled during the wait";
    ASSERT_TRUE(QTest::qWaitFor([&] { return replies == 2; }, patienceMilliseconds));
    EXPECT_FALSE(hosts.hangs());
    EXPECT_EQ(changes, 0);
}

TEST_F(TrayHostsTest, ALostBusEndsAPendingQuery) {
    NotifierWatcher watcher(bus);
    watcher.setHost(true);
    hosts.watchBus();
    ASSERT_TRUE(becomes(true));
    bus.freeze();
    hosts.requestReply();
    bus.kill();
    ASSERT_TRUE(becomes(false));
    EXPECT_FALSE(hosts.hangs());
    EXPECT_GE(replies, 2);
}

TEST_F(TrayHostsTest, AQueryThatWasLostIsSentAgain) {
    NotifierWatcher watcher(bus, NotifierWatcher::Manner::hangs);
    watcher.setHost(true);
    hosts.watchBus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return watcher.questions() == 1; }, patienceMilliseconds));
    watcher.wakeUpTooLate();
    EXPECT_TRUE(changesTo(true));
    EXPECT_EQ(watcher.questions(), 2);
    EXPECT_EQ(replies, 1);
}

TEST_F(TrayHostsTest, SendsNoSecondQueryWhileAReplyIsPending) {
    NotifierWatcher watcher(bus);
    hosts.requestReply(); // starts to watch the bus, and so sends a query
    hosts.requestReply();
    ASSERT_TRUE(QTest::qWaitFor([&] { return replies == 1; }, patienceMilliseconds));
    QTest::qWait(quietMilliseconds);
    EXPECT_EQ(watcher.questions(), 1);
    hosts.requestReply();
    ASSERT_TRUE(QTest::qWaitFor([&] { return replies == 2; }, patienceMilliseconds));
    EXPECT_EQ(watcher.questions(), 2);
}

TEST_F(TrayHostsTest, WithoutABusRequestReplyEmitsRepliedAtOnce) {
    bus.kill();
    hosts.watchBus();
    replies = 0;
    hosts.requestReply();
    EXPECT_EQ(replies, 1);
}

TEST_F(TrayHostsTest, NotifiesOfAChangeOfTheEmbeddingTrayOnlyWhilePolling) {
    embedding = true;
    EXPECT_TRUE(hosts.embedding());
    QTest::qWait(1500);
    EXPECT_EQ(changes, 0);
    hosts.pollEmbedding(true);
    EXPECT_EQ(changes, 0);
    embedding = false;
    hosts.pollEmbedding(true); // does not restart the polling
    EXPECT_TRUE(QTest::qWaitFor([&] { return changes == 1; }, patienceMilliseconds));
    embedding = true;
    EXPECT_TRUE(QTest::qWaitFor([&] { return changes == 2; }, patienceMilliseconds));
    hosts.pollEmbedding(false);
    embedding = false;
    QTest::qWait(1500);
    EXPECT_EQ(changes, 2);
}

TEST(EmbeddingTray, IsMissingWithoutAnXServer) {
    EXPECT_FALSE(embeddingTrayPresent());
}

} // namespace
} // namespace sonarith
