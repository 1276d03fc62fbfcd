// SPDX-License-Identifier: GPL-3.0-or-later
// The base class of the tests of QtTray: a tray with a menu, on a private bus.
#pragma once

#include <cstdint>
#include <vector>

#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTest>
#include <gtest/gtest.h>

#include "platform/controls/form.h"
#include "platform/qt/qt_tray.h"
#include "support/private_bus.h"

namespace sonarith {

inline constexpr int trayPatienceMilliseconds = 30'000;

/// A form with a menu like that of the program's tray icon.
struct MenuForm : Form {
    MenuForm() : Form("frmpopup") {}
    MenuItem stop{*this, "stop", "Stop & go"};
    MenuItem restore{*this, "restore", "Restore"};
    MenuItem line{*this, "line", "-"};
    MenuItem end{*this, "end", "End"};
    MenuItem menu{*this, "menu", "Popup", {&stop, &restore, &line, &end}};
};

inline QIcon redIcon() {
    QPixmap red(64, 64);
    red.fill(Qt::red);
    return QIcon(red);
}

/// A host is a panel that shows tray icons. A watcher is the service on the session bus with which
/// hosts register.
class QtTrayTest : public testing::Test {
  protected:
    QtTrayTest() {
        tray.setMenu(form.menu);
        hosts_ = tray.hostChanged.connect([this] { hosts.push_back(tray.hostPresent()); });
    }
    [[nodiscard]] QSystemTrayIcon* shown() const { return tray.findChild<QSystemTrayIcon*>(); }
    [[nodiscard]] QAction* action(const char* name) const {
        return shown()->contextMenu()->findChild<QAction*>(QString::fromLatin1(name));
    }
    /// Adds an icon and waits until it appears.
    bool addAndShow(std::uint32_t identifier, const char* tip) {
        const qsizetype before = icons();
        return tray.add({identifier, &form, tip}) &&
               QTest::qWaitFor([&] { return icons() == before + 1; }, trayPatienceMilliseconds);
    }
    [[nodiscard]] qsizetype icons() const { return tray.findChildren<QSystemTrayIcon*>().size(); }
    bool hostBecomes(bool present) {
        return QTest::qWaitFor([&] { return tray.hostPresent() == present; },
                               trayPatienceMilliseconds);
    }

    test::PrivateBus bus;
    bool embedding = false; ///< whether a panel embeds tray icons as windows
    MenuForm form;
    int iconsDrawn = 0;
    QtTray tray{[this] {
                    ++iconsDrawn;
                    return redIcon();
                },
                {[this] { return bus.connect(); },
                 [this] {
                     return embedding;
                 }}};
    std::vector<bool> hosts;

  private:
    Connection hosts_;
};

} // namespace sonarith
