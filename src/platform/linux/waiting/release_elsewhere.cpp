// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/waiting/release_elsewhere.h"

#include <system_error>
#include <thread>
#include <utility>

namespace sonarith::waiting {

void releaseElsewhere(std::shared_ptr<const void> object) {
    try {
        std::thread([owned = std::move(object)]() mutable { owned.reset(); }).detach();
    } catch (const std::system_error&) {
        // The system cannot create a thread: the object has been destroyed on this one.
        return;
    }
}

} // namespace sonarith::waiting
