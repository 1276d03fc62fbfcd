// SPDX-License-Identifier: GPL-3.0-or-later
// Sends desktop notifications (freedesktop.org, Desktop Notifications Specification 1.2). Without a
// notification service nothing is shown. ui/notice_center.h decides which notices are sent.
#pragma once

#include <memory>

#include <QString>

#include "platform/thread_start.h"

namespace sonarith {

class DesktopNotifications {
  public:
    explicit DesktopNotifications(QString title, ThreadStarter starter = startThread);
    ~DesktopNotifications();
    DesktopNotifications(const DesktopNotifications&) = delete;
    DesktopNotifications& operator=(const DesktopNotifications&) = delete;

    /// Sends a notification and returns at once. The bus may hang, so a separate thread sends
    /// the text. While that thread waits for the bus, or cannot be started, only the most recent
    /// text is kept.
    void send(const QString& text);

  private:
    struct Mailbox;

    ThreadStarter starter_;
    std::shared_ptr<Mailbox> mailbox_; ///< shared with the thread
};

} // namespace sonarith
