// SPDX-License-Identifier: GPL-3.0-or-later
// Requests from outside to end the program: signals from the system, and the end of the desktop
// session. The caller decides what to do.
#pragma once

#include <functional>
#include <memory>

#include <QSocketNotifier>

namespace sonarith {

/// Whether `notifier` belongs to an EndRequests. The activation of such a notifier means that a
/// signal to end the program has arrived.
[[nodiscard]] bool isEndRequest(const QObject& notifier);

/// At most one instance per process; for the user-interface thread.
class EndRequests {
  public:
    /// `end` runs within the event loop for SIGTERM, SIGINT and SIGHUP (SIGHUP only if it is not
    /// ignored, as it is under nohup). Each signal is caught once: a second one ends the process.
    /// `save` runs when the desktop's session manager asks all programs to save; the session may
    /// continue after that.
    EndRequests(std::function<void()> end, std::function<void()> save);
    ~EndRequests();
    EndRequests(const EndRequests&) = delete;
    EndRequests& operator=(const EndRequests&) = delete;

  private:
    int readEnd_ = -1;
    std::unique_ptr<QSocketNotifier> arrived_;
    QMetaObject::Connection sessionEnds_;
};

} // namespace sonarith
