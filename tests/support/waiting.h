// SPDX-License-Identifier: GPL-3.0-or-later
// Lets a test wait for the effect of another thread or process. The limit of half a minute only
// turns a hang into a failure; it is no requirement on the speed of the tested code.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace sonarith::fakes {

/// Waits until `condition` is true. Returns false if it is still false after half a minute.
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
