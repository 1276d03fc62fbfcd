// SPDX-License-Identifier: GPL-3.0-or-later
// Runs work when the present event has been handled. For work of the logic: unlike a queued call,
// and a single shot of QTimer without a delay, which is one, it never runs within a wait
// (qt_waiting.h).
#pragma once

#include <functional>

class QObject;

namespace sonarith {

/// Runs `work` once control is back in an event loop, that of a yield included; never if `context`
/// is destroyed before.
void runLater(QObject& context, std::function<void()> work);

} // namespace sonarith
