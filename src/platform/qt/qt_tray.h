// SPDX-License-Identifier: GPL-3.0-or-later
// The tray of a Linux desktop, based on Qt's tray icon. Qt supports two protocols: status notifiers
// on the session bus, and embedded windows under X11. Qt chooses the protocol once per process,
// when its first icon is created. So this class creates no icon before a host exists, which is a
// panel that shows tray icons. The protocol of that host then stays in use.
//
// When Qt creates an icon on the bus, it waits for the bus without a limit. When Qt removes such an
// icon, it waits up to 25 s. So this class does both only when TrayHosts::replied is emitted. That
// is a few milliseconds after add() or remove(); if the bus hangs, it is after the hang. If the
// logic waits (qt_waiting.h), it is after that wait: a panel reads the picture and the menu of a
// new icon at once, and would get no reply during the wait.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <QIcon>
#include <QSystemTrayIcon>

#include "platform/qt/tray_hosts.h"
#include "platform/qt/tray_menu.h"
#include "platform/tray.h"

namespace sonarith {

class QtTray : public QObject, public Tray {
  public:
    /// `icon` returns the picture of every tray icon. The picture must be drawable at any size.
    /// `icon` is called once for each QSystemTrayIcon.
    explicit QtTray(std::function<QIcon()> icon, TrayHosts::Sources hosts = TrayHosts::desktop());
    ~QtTray() override;

    /// Connects to the session bus and watches it for panels. The first add() does so, too. Before
    /// the bus has replied, hostPresent() detects no panel on the bus.
    void watchHosts() { hosts_.watchBus(); }

    bool add(const TrayIcon& icon) override;
    /// Sends nothing to the panel if the tip is unchanged.
    bool modify(const TrayIcon& icon) override;
    bool remove(std::uint32_t identifier) override;
    void setMenu(MenuItem& menu) override;
    [[nodiscard]] bool hostPresent() const override;

  private:
    enum class Way { statusNotifier, embedding };
    struct Entry {
        QString tip;
        std::unique_ptr<QSystemTrayIcon> shown; ///< null until updateIcons() creates it
    };

    void followHosts();
    void requestUpdate();
    void updateIcons();
    void registerAnew();
    void show(Entry& entry);
    void discard(Entry& entry);
    void openMenuHere();
    /// Null before setMenu().
    [[nodiscard]] TrayMenu* menuOfIcons();

    std::function<QIcon()> icon_;
    TrayHosts hosts_;
    Connection hostsChanged_;
    Connection hostsReplied_;
    Connection watcherReplaced_;
    std::optional<Way> way_;
    bool presentBefore_ = false;
    MenuItem* heading_ = nullptr; ///< set by setMenu(); menu_ and drawnHere_ show its entries
    /// Most panels on the bus draw menu_ themselves; Qt draws menu_ for an embedded icon. Some
    /// panels on the bus ask the program to draw the menu. For these panels, the program opens
    /// drawnHere_, a second menu with the same entries, because Qt never draws a menu that it has
    /// exported to the bus. Both menus are created when they are needed, since most starts of the
    /// program show no icon.
    std::unique_ptr<TrayMenu> menu_;
    std::unique_ptr<TrayMenu> drawnHere_;
    std::map<std::uint32_t, Entry> entries_;
    std::vector<std::unique_ptr<QSystemTrayIcon>> discarded_; ///< updateIcons() destroys them
};

} // namespace sonarith
