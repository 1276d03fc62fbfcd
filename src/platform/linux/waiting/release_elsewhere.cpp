// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/waiting/release_elsewhere.h"

#include <utility>

namespace sonarith::waiting {

void releaseElsewhere(std::shared_ptr<const void> object, const ThreadStarter& starter) {
    Result<std::thread> thread = starter([owned = std::move(object)]() mutable { owned.reset(); });
    if (thread.ok()) {
        thread.value().detach();
    }
}

} // namespace sonarith::waiting
