// SPDX-License-Identifier: GPL-3.0-or-later
// Notifications of the desktop (freedesktop.org, Desktop Notifications Specification 1.2), for what
// happens while no window is seen. Without a notification service nothing happens.
#pragma once

#include <memory>

#include <QString>

namespace sonarith {

class DesktopNotifications {
  public:
    explicit DesktopNotifications(QString title);
    ~DesktopNotifications();
    DesktopNotifications(const DesktopNotifications&) = delete;
    DesktopNotifications& operator=(const DesktopNotifications&) = delete;

    /// Sends a notification, and returns at once: the bus may hang, and is spoken to on a thread of
    /// its own. While that waits, the last text alone is kept for it.
    void send(const QString& text);

  private:
    struct Mailbox;

    std::shared_ptr<Mailbox> mailbox_; ///< shared with the thread
};

} // namespace sonarith
