// SPDX-License-Identifier: GPL-3.0-or-later
// Runs work of the logic after the current event has been handled. The work never runs within a
// wait (qt_waiting.h); a queued call would, and so would QTimer's single shot without a delay,
// which is a queued call.
#pragma once

#include <functional>

class QObject;

namespace sonarith {

/// Runs `work` once control is back in an event loop, including that of a yield; never if `context`
/// is destroyed before.
void runLater(QObject& context, std::function<void()> work);

} // namespace sonarith
