// SPDX-License-Identifier: GPL-3.0-or-later
// Waits for work on another thread while the windows are painted and can be closed. The code in
// linux/waiting/ starts the work.
#pragma once

#include <chrono>

#include "platform/qt/held_events.h"
#include "platform/waiting.h"

namespace sonarith {

/// The program has one QtWaiting. Use it only on the thread of the QApplication.
///
/// A wait first blocks the thread for at most Waiting::plainMoment. If the work has not completed
/// by then, the windows are painted and the mouse pointer is an hourglass until the wait ends. No
/// handler runs during a wait: due timers fire afterwards, and input is held back (HeldEvents). A
/// request to close a window, or a signal to end the program, ends the wait.
///
/// Queued calls (Qt::QueuedConnection) run even during a wait. So do not call the logic by a queued
/// call. Use runLater() instead, which calls the logic after the wait.
class QtWaiting final : public Waiting {
  public:
    /// After a request to close or a signal has ended a wait, all further waits together take at
    /// most this time. The limit applies until control is back in an event loop. So short work
    /// still completes, but work that hangs cannot delay the end of the program.
    static constexpr Duration haste{200};

    [[nodiscard]] Outcome wait(const Completion& completion, Duration bound) override;

  private:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] Outcome waitInHaste(const Completion& completion, Duration bound);
    [[nodiscard]] Outcome waitPainting(const Completion& completion, Clock::time_point deadline);

    HeldEvents held_;
    bool waiting_ = false;
    Clock::duration hasteLeft_{};
};

} // namespace sonarith
