// SPDX-License-Identifier: GPL-3.0-or-later
// Who else may ask the program to end: the system by a signal, and the desktop at the end of the
// session. What the program does then is its own matter.
#pragma once

#include <functional>
#include <memory>

#include <QSocketNotifier>

namespace sonarith {

/// Whether `notifier` is the one of an EndRequests: its activation means that a signal has arrived
/// that asks the program to end.
[[nodiscard]] bool isEndRequest(const QObject& notifier);

/// One for each process, while it lives; for the user-interface thread.
class EndRequests {
  public:
    /// `end` runs within the event loop for SIGTERM, SIGINT and SIGHUP (the latter unless it is
    /// ignored, as under nohup). Each is caught once: who sends it again wants the process gone.
    /// `save` runs when the desktop's session manager asks all programs to save; the session may
    /// still go on after that.
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
