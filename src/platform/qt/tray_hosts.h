// SPDX-License-Identifier: GPL-3.0-or-later
// Detects the panels that show tray icons: a host of status notifiers on the session bus, or a
// panel that embeds windows under X11. Shows no icon itself.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QTimer>

#include "platform/controls/signal.h"

namespace sonarith {

/// Never waits for a reply from the bus: statusNotifier() keeps its value until the reply arrives.
/// A reply that arrives during a wait (qt_waiting.h) is handled after the wait. The "watcher" is
/// the registry of status notifiers on the bus. Use this class only on the logic thread.
class TrayHosts : public QObject {
  public:
    struct Sources {
        std::function<QDBusConnection()> bus; ///< connects to the bus
        std::function<bool()> embedding;      ///< whether a panel embeds windows now
    };
    /// The sources that the program uses: the session bus and the X server of the desktop.
    [[nodiscard]] static Sources desktop();

    explicit TrayHosts(Sources sources);

    /// Connects to the bus and watches it from now on. Does nothing if the bus is already watched.
    void watchBus();
    /// Turns polling of embedding() on or off; the period is one second. Polling is necessary
    /// because Qt reports no event of the X server when embedding() changes.
    void pollEmbedding(bool poll);

    /// Whether a host of status notifiers is registered; false until the bus has replied.
    [[nodiscard]] bool statusNotifier() const { return statusNotifier_; }
    [[nodiscard]] bool embedding() const { return sources_.embedding(); }

    /// Queries the watcher, unless a reply is pending; watches the bus from now on. `replied` is
    /// emitted when the reply arrives, or within this call if there is no bus.
    void requestReply();
    /// Whether a reply has been pending for one second or longer.
    [[nodiscard]] bool hangs() const { return hangs_; }

    /// The bus and the watcher have just replied, or are missing. Qt's functions that wait for them
    /// do not block now.
    Signal<> replied;
    /// statusNotifier() or hangs() has changed, or polling has detected a change of embedding().
    Signal<> changed;
    /// The watcher has passed from one process directly to another. Icons that were registered with
    /// the previous watcher are not registered with the new watcher.
    Signal<> watcherReplaced;

  private:
    void followOwner(const QString& former, const QString& present);
    void ask();
    void acceptReply(bool present);
    void checkEmbedding();

    Sources sources_;
    std::optional<QDBusConnection> bus_;
    std::unique_ptr<QDBusServiceWatcher> owner_;
    QTimer recheck_; ///< started by signals from the bus; queries the watcher
    QTimer poll_;
    QTimer patience_;           ///< sets hangs_ if a reply is pending for too long
    unsigned lastQuestion_ = 0; ///< number of the last query; replies to older ones are ignored
    bool replyPending_ = false;
    bool hangs_ = false;
    bool statusNotifier_ = false;
    bool embeddingSeen_ = false;
};

} // namespace sonarith
