// SPDX-License-Identifier: GPL-3.0-or-later
// Runs work after the current event has been handled. For work of the logic: it never runs within a
// wait (qt_waiting.h), unlike a queued call and unlike QTimer's single shot without a delay, which
// is a queued call.
#pragma once

#include <functional>

class QObject;

namespace sonarith {

/// Runs `work` once control is back in an event loop, including that of a yield; never if `context`
/// is destroyed before.
void runLater(QObject& context, std::function<void()> work);

} // namespace sonarith
