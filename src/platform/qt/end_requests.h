// SPDX-License-Identifier: GPL-3.0-or-later
// Calls a function when a signal to end the program arrives. Calls another function when the
// desktop's session manager asks all programs to save. These functions decide what to do.
#pragma once

#include <functional>
#include <memory>

#include <QSocketNotifier>

namespace sonarith {

/// Whether `notifier` belongs to an EndRequests. The activation of such a notifier means that a
/// signal to end the program has arrived.
[[nodiscard]] bool isEndRequest(const QObject& notifier);

/// At most one instance exists per process. Use it only on the logic thread.
class EndRequests {
  public:
    /// `end` runs within the event loop after SIGTERM, SIGINT or SIGHUP. A signal that is ignored,
    /// such as SIGHUP under nohup, stays ignored. Each signal is caught once: if the same signal
    /// arrives a second time, it ends the process. `save` runs when the desktop's session manager
    /// asks all programs to save; the session may continue after that.
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
