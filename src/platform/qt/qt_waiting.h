// SPDX-License-Identifier: GPL-3.0-or-later
// Waits for work on another thread while the windows stay painted and can be closed. It starts no
// work itself; linux/waiting/ does.
#pragma once

#include <chrono>

#include "platform/qt/held_events.h"
#include "platform/waiting.h"

namespace sonarith {

/// One for each program, beside the one QApplication, on its thread.
///
/// A wait first rests for plainMoment. If that is not enough, the windows are painted and the mouse
/// pointer is an hourglass until the wait ends. No handler runs meanwhile: timers do not fire (what
/// falls due fires afterwards, as after any long handler), and input is held back (HeldEvents). A
/// window that is closed, or a signal that ends the program, ends the wait. Queued calls of the
/// program's own do run: whoever enters the logic from outside of an event uses runLater().
class QtWaiting final : public Waiting {
  public:
    /// For all waits together from the one that a close has ended until control is back in an event
    /// loop: work that is done at once is still waited for, but what hangs cannot hold up the end.
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
