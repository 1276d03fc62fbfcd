// SPDX-License-Identifier: GPL-3.0-or-later
// Waits, in a test, for the effect of another thread or process. The limit only turns a hang into a
// failure: no test asserts how long something took.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace sonarith::fakes {

/// Waits until `condition` is true; returns false if it is not within half a minute.
inline bool eventually(const std::function<bool()>& condition) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

} // namespace sonarith::fakes
