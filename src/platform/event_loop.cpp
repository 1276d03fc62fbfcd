// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/event_loop.h"

#include <algorithm>

namespace sonarith {

void EventLoop::waitFor(Duration duration) {
    const Time end = now() + duration;
    // While waitWhile() waits, it evaluates its condition only after events. This wake-up is the
    // event that ends the wait in time.
    const auto wakeup = every(std::max(duration, Duration(1)), [] {});
    waitWhile([&] { return now() < end; });
}

} // namespace sonarith
