// SPDX-License-Identifier: GPL-3.0-or-later
// Which panels that show icons there are: a host of status notifiers on the session bus, or one
// that embeds windows under X11. It shows no icon.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QTimer>

#include "platform/controls/signal.h"

namespace sonarith {

/// No question to the bus is waited for: a bus or a panel that hangs counts as none until it
/// answers. For the user-interface thread.
class TrayHosts : public QObject {
  public:
    struct Sources {
        std::function<QDBusConnection()> bus; ///< connects
        std::function<bool()> embedding;      ///< whether a panel embeds windows now
    };
    /// Those of the desktop.
    [[nodiscard]] static Sources desktop();

    explicit TrayHosts(Sources sources);

    /// Connects to the bus and watches it from now on. Nothing if it does so already.
    void watchBus();
    /// Whether changes of embedding() are looked for, once a second: the X server sends no event of
    /// them that Qt passes on.
    void pollEmbedding(bool poll);

    /// Whether a host of status notifiers is registered; false before the bus has answered.
    [[nodiscard]] bool statusNotifier() const { return statusNotifier_; }
    [[nodiscard]] bool embedding() const { return sources_.embedding(); }

    /// Either may have become another.
    Signal<> changed;

  private:
    void ask();
    void setStatusNotifier(bool present);
    void lookAtEmbedding();

    Sources sources_;
    std::optional<QDBusConnection> bus_;
    std::unique_ptr<QDBusServiceWatcher> owner_;
    QTimer recheck_; ///< started by the bus's signals; asks
    QTimer poll_;
    unsigned lastQuestion_ = 0; ///< the reply to an older one says nothing any more
    bool statusNotifier_ = false;
    bool embeddingSeen_ = false;
};

} // namespace sonarith
