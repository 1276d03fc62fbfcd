// SPDX-License-Identifier: GPL-3.0-or-later
// Waiting, in a test, for what another thread or process will bring about. The limit only turns a
// hang into a failure: no test asserts how long anything took.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace sonarith::fakes {

/// Waits until `condition` holds; false if it does not within half a minute.
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
