// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/event_loop.h"

#include <algorithm>

namespace sonarith {

void EventLoop::waitFor(Duration duration) {
    const Time end = now() + duration;
    // The wake-up is there to be an event: without one the wait would rest past its end.
    const auto wakeup = every(std::max(duration, Duration(1)), [] {});
    waitWhile([&] { return now() < end; });
}

} // namespace sonarith
