// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the tray while the bus does not reply.
#include "platform/qt/qt_tray.h"

#include <gmock/gmock.h>

#include "platform/qt/qt_tray_fixture.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

class HangingBusTest : public QtTrayTest {
  protected:
    // The watcher leaves the bus at the end of a test, and waits for the bus's reply.
    void TearDown() override { bus.thaw(); }

    bool hostAppears() {
        watcher.setHost(true);
        tray.watchHosts();
        return hostBecomes(true);
    }

    test::NotifierWatcher watcher{bus};
};

TEST_F(HangingBusTest, AnAddedIconIsShownAfterTheHang) {
    ASSERT_TRUE(hostAppears());
    bus.freeze();
    EXPECT_TRUE(tray.add({1, &form, "one"}));
    ASSERT_TRUE(hostBecomes(false));
    EXPECT_FALSE(shown());
    bus.thaw();
    ASSERT_TRUE(hostBecomes(true));
    EXPECT_TRUE(shown());
    EXPECT_THAT(hosts, ElementsAre(true, false, true));
}

TEST_F(HangingBusTest, AnEmbeddingPanelCountsAsNoHostDuringTheHangIfNoIconWasShownBefore) {
    ASSERT_TRUE(hostAppears());
    watcher.setHost(false);
    ASSERT_TRUE(hostBecomes(false));
    embedding = true;
    bus.freeze();
    EXPECT_TRUE(tray.add({1, &form, "one"}));
    ASSERT_TRUE(hostBecomes(false));
    EXPECT_FALSE(shown());
    bus.thaw();
    ASSERT_TRUE(hostBecomes(true));
    EXPECT_TRUE(shown());
}

TEST_F(HangingBusTest, ARemovedIconIsDestroyedAfterTheHang) {
    ASSERT_TRUE(hostAppears());
    ASSERT_TRUE(addAndShow(1, "one"));
    bus.freeze();
    EXPECT_TRUE(tray.remove(1));
    EXPECT_FALSE(tray.remove(1));
    EXPECT_TRUE(tray.add({1, &form, "two"}));
    ASSERT_TRUE(hostBecomes(false));
    EXPECT_EQ(icons(), 1);
    EXPECT_EQ(shown()->toolTip(), "one");
    bus.thaw();
    ASSERT_TRUE(hostBecomes(true));
    EXPECT_EQ(icons(), 1);
    EXPECT_EQ(shown()->toolTip(), "two");
}

TEST_F(HangingBusTest, DuringTheHangAnEmbeddedIconIsRemovedAtOnceAndANewOneIsShownAtOnce) {
    embedding = true;
    ASSERT_TRUE(addAndShow(1, "one"));
    bus.freeze();
    EXPECT_TRUE(tray.remove(1));
    EXPECT_FALSE(shown());
    EXPECT_TRUE(tray.add({1, &form, "two"}));
    EXPECT_TRUE(shown());
    EXPECT_TRUE(tray.hostPresent());
}

} // namespace
} // namespace sonarith
