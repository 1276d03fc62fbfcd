// SPDX-License-Identifier: GPL-3.0-or-later
// The tray of a Linux desktop, over Qt's tray icon, which speaks to panels in two ways: status
// notifiers on the session bus and embedded windows under X11. Added to it is what Qt's lacks: it
// asks which way to go when its first icon is made, once for the process; so no icon is made before
// there is a panel, and the way that was found then is the one that counts from there on.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include <QIcon>
#include <QSystemTrayIcon>

#include "platform/qt/tray_hosts.h"
#include "platform/qt/tray_menu.h"
#include "platform/tray.h"

namespace sonarith {

class QtTray : public QObject, public Tray {
  public:
    /// `icon` draws the icon of every entry, in any size; it is asked when one is first shown.
    explicit QtTray(std::function<QIcon()> icon, TrayHosts::Sources hosts = TrayHosts::desktop());
    ~QtTray() override;

    /// Connects to the session bus and looks for panels, which takes a moment; the first add() does
    /// so too. Before that hostPresent() knows of none on the bus.
    void watchHosts() { hosts_.watchBus(); }

    bool add(const TrayIcon& icon) override;
    /// Sends nothing to the panel for the tip that it has already.
    bool modify(const TrayIcon& icon) override;
    bool remove(std::uint32_t identifier) override;
    void setMenu(MenuItem& menu) override;
    [[nodiscard]] bool hostPresent() const override;

  private:
    enum class Way { statusNotifier, embedding };
    struct Entry {
        QString tip;
        std::unique_ptr<QSystemTrayIcon> shown; ///< none until there was a panel
    };

    void followHosts();
    void showWaitingIcons();
    void show(Entry& entry);
    void openMenuHere();

    std::function<QIcon()> icon_;
    TrayHosts hosts_;
    Connection hostsChanged_;
    std::optional<Way> way_;
    bool presentBefore_ = false;
    /// One that the panel draws on the bus or Qt on an embedded icon, and one for panels on the bus
    /// that draw none: Qt never shows a menu itself that it has handed to the bus.
    std::unique_ptr<TrayMenu> menu_;
    std::unique_ptr<TrayMenu> drawnHere_;
    std::map<std::uint32_t, Entry> entries_;
};

} // namespace sonarith
