// SPDX-License-Identifier: GPL-3.0-or-later
// Groups the services that are needed to call an object that may hang.
#pragma once

#include "platform/linux/waiting/worker_threads.h"
#include "platform/notices.h"
#include "platform/waiting.h"

namespace sonarith::waiting {

/// All must outlive the objects that use them.
struct Services {
    WorkerThreads& threads;
    Waiting& waiting;
    Notices& notices; ///< reports that an object does not respond, and that it responds again
};

} // namespace sonarith::waiting
