// SPDX-License-Identifier: GPL-3.0-or-later
// Runs work of the logic later, from an event loop, and never within a wait (qt_waiting.h). The
// work runs from a timer, because a queued call would run within a wait; QTimer::singleShot()
// without a delay is a queued call, too.
#pragma once

#include <functional>

class QObject;

namespace sonarith {

/// Runs `work` one time, as soon as control is back in an event loop. A yield of the current
/// handler can run `work`, too; a wait cannot. If `context` is destroyed first, `work` never runs.
void runLater(QObject& context, std::function<void()> work);

} // namespace sonarith
