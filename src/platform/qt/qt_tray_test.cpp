// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_tray.h"

#include <string>
#include <vector>

#include <QApplication>
#include <gmock/gmock.h>

#include "platform/qt/qt_tray_fixture.h"
#include "platform/qt/sized_icon.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// --- icons ----------------------------------------------------------------------------------

TEST_F(QtTrayTest, RefusesToAddAnExistingIconAndToRemoveAMissingIcon) {
    embedding = true;
    EXPECT_FALSE(tray.modify({1, &form, "x"}));
    EXPECT_FALSE(tray.remove(1));
    ASSERT_TRUE(addAndShow(1, "one"));
    EXPECT_FALSE(tray.add({1, &form, "two"}));
    ASSERT_TRUE(shown());
    EXPECT_TRUE(shown()->isVisible());
    EXPECT_EQ(shown()->toolTip(), "one");
    EXPECT_TRUE(tray.modify({1, &form, "three"}));
    EXPECT_EQ(shown()->toolTip(), "three");
    EXPECT_TRUE(tray.remove(1));
    EXPECT_FALSE(tray.remove(1));
    EXPECT_FALSE(shown());
}

TEST_F(QtTrayTest, EachIdentifierHasItsOwnIcon) {
    embedding = true;
    ASSERT_TRUE(addAndShow(1, "one"));
    ASSERT_TRUE(addAndShow(2, "two"));
    EXPECT_EQ(tray.findChildren<QSystemTrayIcon*>().size(), 2);
    EXPECT_TRUE(tray.remove(1));
    ASSERT_EQ(tray.findChildren<QSystemTrayIcon*>().size(), 1);
    EXPECT_EQ(shown()->toolTip(), "two");
}

TEST_F(QtTrayTest, AnUnchangedTipIsNotSentAgain) {
    embedding = true;
    ASSERT_TRUE(addAndShow(1, "one"));
    // QtTray does not know this tip, and would replace it by setting its own tip again.
    shown()->setToolTip("set by the test");
    EXPECT_TRUE(tray.modify({1, &form, "one"}));
    EXPECT_EQ(shown()->toolTip(), "set by the test");
    EXPECT_TRUE(tray.modify({1, &form, "two"}));
    EXPECT_EQ(shown()->toolTip(), "two");
}

TEST_F(QtTrayTest, AnIconWaitsForAPanelAndIsShownWithItsLatestTip) {
    EXPECT_TRUE(tray.add({1, &form, "one"}));
    EXPECT_TRUE(tray.modify({1, &form, "two"}));
    QTest::qWait(100);
    EXPECT_FALSE(shown());
    EXPECT_EQ(iconsDrawn, 0);
    test::NotifierWatcher watcher(bus);
    watcher.setHost(true);
    ASSERT_TRUE(hostBecomes(true));
    ASSERT_TRUE(shown());
    EXPECT_EQ(shown()->toolTip(), "two");
    EXPECT_EQ(shown()->contextMenu()->objectName(), "menu");
    EXPECT_EQ(iconsDrawn, 1);
}

TEST_F(QtTrayTest, AnIconRemovedBeforeAnyPanelExistsIsNeverShown) {
    EXPECT_TRUE(tray.add({1, &form, "one"}));
    EXPECT_TRUE(tray.remove(1));
    test::NotifierWatcher watcher(bus);
    watcher.setHost(true);
    ASSERT_TRUE(hostBecomes(true));
    EXPECT_FALSE(shown());
}

TEST_F(QtTrayTest, AnIconThatWasRemovedAndAddedAgainIsShownAgain) {
    embedding = true;
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(addAndShow(1, "one"));
        ASSERT_TRUE(shown());
        EXPECT_TRUE(shown()->isVisible());
        EXPECT_EQ(shown()->contextMenu()->objectName(), "menu");
        EXPECT_TRUE(tray.remove(1));
    }
}

// --- the menu -------------------------------------------------------------------------------

TEST_F(QtTrayTest, TheMenuHasTheEntriesOfItsModelInTheSameOrder) {
    embedding = true;
    ASSERT_TRUE(addAndShow(1, "one"));
    std::vector<std::string> texts;
    for (const QAction* entry : shown()->contextMenu()->actions()) {
        texts.push_back(entry->isSeparator() ? "-" : entry->text().toStdString());
    }
    EXPECT_THAT(texts, ElementsAre("Stop && go", "Restore", "-", "End"));
}

TEST_F(QtTrayTest, ATriggeredEntryClicksItsModelLaterInTheEventLoop) {
    embedding = true;
    ASSERT_TRUE(addAndShow(1, "one"));
    std::vector<std::string> clicks;
    form.restore.onClick = [&] {
        clicks.emplace_back("restore");
        EXPECT_TRUE(tray.remove(1));
    };
    form.end.onClick = [&] {
        clicks.emplace_back("end");
    };
    action("restore")->trigger();
    EXPECT_THAT(clicks, IsEmpty());
    action("end")->trigger();
    QApplication::processEvents();
    EXPECT_THAT(clicks, ElementsAre("restore", "end"));
    EXPECT_FALSE(shown());
}

TEST_F(QtTrayTest, TheMenuShowsTheStateOfItsModel) {
    embedding = true;
    ASSERT_TRUE(addAndShow(1, "one"));
    form.stop.setEnabled(false);
    form.end.setVisible(false);
    EXPECT_FALSE(action("stop")->isEnabled());
    EXPECT_FALSE(action("end")->isVisible());
    form.stop.setEnabled(true);
    EXPECT_TRUE(action("stop")->isEnabled());
}

TEST_F(QtTrayTest, TheModelOfTheMenuIsNotifiedOnceBeforeTheMenuOpens) {
    embedding = true;
    ASSERT_TRUE(addAndShow(1, "one"));
    int opened = 0;
    form.menu.onOpen = [&] {
        ++opened;
        EXPECT_FALSE(shown()->contextMenu()->isVisible());
    };
    shown()->contextMenu()->popup(QPoint()); // as Qt does for an embedded icon
    EXPECT_EQ(opened, 1);
    // After the popup, Qt also sends this signal; it must not notify the model again.
    Q_EMIT shown()->activated(QSystemTrayIcon::Context);
    EXPECT_EQ(opened, 1);
    shown()->contextMenu()->close();
}

TEST_F(QtTrayTest, TheProgramDrawsTheMenuIfThePanelOnTheBusDrawsNone) {
    test::NotifierWatcher watcher(bus);
    watcher.setHost(true);
    EXPECT_TRUE(tray.add({1, &form, "one"}));
    ASSERT_TRUE(hostBecomes(true));
    int opened = 0;
    form.menu.onOpen = [&] {
        ++opened;
    };
    bool restored = false;
    form.restore.onClick = [&] {
        restored = true;
    };
    Q_EMIT shown()->activated(QSystemTrayIcon::Context);
    QWidget* menu = QApplication::activePopupWidget();
    ASSERT_TRUE(menu);
    EXPECT_NE(menu, shown()->contextMenu());
    EXPECT_EQ(opened, 1);
    menu->findChild<QAction*>("restore")->trigger();
    QApplication::processEvents();
    EXPECT_TRUE(restored);
    menu->close();
}

TEST_F(QtTrayTest, ClicksThatRequestNoMenuDoNothing) {
    embedding = true;
    ASSERT_TRUE(addAndShow(1, "one"));
    bool clicked = false;
    for (MenuItem* entry : form.menu.entries()) {
        entry->onClick = [&] {
            clicked = true;
        };
    }
    for (const auto reason : {QSystemTrayIcon::Trigger, QSystemTrayIcon::DoubleClick,
                              QSystemTrayIcon::MiddleClick, QSystemTrayIcon::Unknown}) {
        Q_EMIT shown()->activated(reason);
        QApplication::processEvents();
        EXPECT_FALSE(clicked);
        EXPECT_FALSE(QApplication::activePopupWidget());
        EXPECT_TRUE(shown()->isVisible());
    }
}

// --- panels ---------------------------------------------------------------------------------

TEST_F(QtTrayTest, DetectsPanelsOnTheBusBeforeAnIconIsAdded) {
    test::NotifierWatcher watcher(bus);
    watcher.setHost(true);
    EXPECT_FALSE(tray.hostPresent());
    tray.watchHosts();
    EXPECT_TRUE(hostBecomes(true));
    EXPECT_THAT(hosts, ElementsAre(true));
    EXPECT_FALSE(shown());
}

TEST_F(QtTrayTest, NotifiesOfPanelsThatAppearAndDisappear) {
    EXPECT_TRUE(tray.add({1, &form, "one"}));
    EXPECT_THAT(hosts, IsEmpty());
    test::NotifierWatcher watcher(bus);
    watcher.setHost(true);
    ASSERT_TRUE(hostBecomes(true));
    watcher.leave();
    ASSERT_TRUE(hostBecomes(false));
    ASSERT_TRUE(shown()) << "the icon must be kept for the next panel";
    watcher.comeBack();
    ASSERT_TRUE(hostBecomes(true));
    EXPECT_THAT(hosts, ElementsAre(true, false, true));
    EXPECT_EQ(tray.findChildren<QSystemTrayIcon*>().size(), 1);
}

TEST_F(QtTrayTest, AfterAnIconWasShownOnTheBusNoEmbeddingPanelCountsAsAHost) {
    test::NotifierWatcher watcher(bus);
    watcher.setHost(true);
    EXPECT_TRUE(tray.add({1, &form, "one"}));
    ASSERT_TRUE(hostBecomes(true));
    embedding = true;
    watcher.leave();
    EXPECT_TRUE(hostBecomes(false));
}

TEST_F(QtTrayTest, AfterAnIconWasEmbeddedNoPanelOnTheBusCountsAsAHost) {
    embedding = true;
    ASSERT_TRUE(addAndShow(1, "one"));
    EXPECT_THAT(hosts, ElementsAre(true));
    test::NotifierWatcher watcher(bus);
    watcher.setHost(true);
    QTest::qWait(300);
    embedding = false;
    EXPECT_FALSE(tray.hostPresent());
    EXPECT_TRUE(QTest::qWaitFor([&] { return hosts.size() == 2; }, trayPatienceMilliseconds));
    EXPECT_THAT(hosts, ElementsAre(true, false));
}

TEST_F(QtTrayTest, PrefersThePanelOnTheBusToAnEmbeddingPanel) {
    test::NotifierWatcher watcher(bus);
    watcher.setHost(true);
    embedding = true;
    tray.watchHosts();
    ASSERT_TRUE(QTest::qWaitFor([&] { return watcher.questions() > 0; }, trayPatienceMilliseconds));
    QTest::qWait(100);
    EXPECT_TRUE(tray.add({1, &form, "one"}));
    embedding = false;
    EXPECT_TRUE(tray.hostPresent());
    watcher.leave();
    EXPECT_TRUE(hostBecomes(false));
}

TEST_F(QtTrayTest, AnIconIsRegisteredAgainWhenAnotherWatcherTakesOver) {
    test::NotifierWatcher first(bus);
    test::NotifierWatcher second(bus);
    first.setHost(true);
    second.setHost(true);
    EXPECT_TRUE(tray.add({1, &form, "one"}));
    ASSERT_TRUE(hostBecomes(true));
    EXPECT_TRUE(tray.modify({1, &form, "two"}));
    first.leave();
    ASSERT_TRUE(QTest::qWaitFor([&] { return iconsDrawn == 2; }, trayPatienceMilliseconds));
    ASSERT_EQ(tray.findChildren<QSystemTrayIcon*>().size(), 1);
    EXPECT_TRUE(shown()->isVisible());
    EXPECT_EQ(shown()->toolTip(), "two");
    EXPECT_EQ(shown()->contextMenu()->objectName(), "menu");
    ASSERT_TRUE(QTest::qWaitFor([&] { return second.questions() > 0; }, trayPatienceMilliseconds));
    QTest::qWait(100);
    EXPECT_THAT(hosts, ElementsAre(true));
}

TEST_F(QtTrayTest, AnEmbeddedIconIsNotDrawnAgainWhenAnotherWatcherTakesOver) {
    test::NotifierWatcher first(bus);
    test::NotifierWatcher second(bus);
    embedding = true;
    ASSERT_TRUE(addAndShow(1, "one"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return first.questions() > 0; }, trayPatienceMilliseconds));
    first.leave();
    ASSERT_TRUE(QTest::qWaitFor([&] { return second.questions() > 0; }, trayPatienceMilliseconds));
    EXPECT_EQ(iconsDrawn, 1);
}

TEST_F(QtTrayTest, AnIconCanBeModifiedRemovedAndAddedAfterTheBusConnectionIsLost) {
    test::NotifierWatcher watcher(bus);
    watcher.setHost(true);
    EXPECT_TRUE(tray.add({1, &form, "one"}));
    ASSERT_TRUE(hostBecomes(true));
    bus.kill();
    EXPECT_TRUE(hostBecomes(false));
    EXPECT_TRUE(tray.modify({1, &form, "two"}));
    EXPECT_TRUE(tray.remove(1));
    EXPECT_EQ(icons(), 0);
    EXPECT_TRUE(tray.add({1, &form, "three"}));
    EXPECT_FALSE(tray.hostPresent());
    EXPECT_TRUE(tray.remove(1));
}

// --- the icon's sizes -----------------------------------------------------------------------

TEST(SizedIcon, IsDrawnForEachIconSizeOfCommonPanels) {
    const QIcon icon = withPanelSizes(redIcon());
    std::vector<int> sides;
    for (const QSize& size : icon.availableSizes()) {
        sides.push_back(size.width());
        EXPECT_EQ(icon.pixmap(size).size(), size);
        EXPECT_EQ(icon.pixmap(size).toImage().pixelColor(size.width() / 2, size.height() / 2),
                  QColor(Qt::red));
    }
    EXPECT_THAT(sides, ElementsAre(16, 22, 24, 32, 44, 48, 64));
}

} // namespace
} // namespace sonarith
