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
        // The system has no thread to give: the object has ended here.
        return;
    }
}

} // namespace sonarith::waiting
