// SPDX-License-Identifier: GPL-3.0-or-later
// What everything that may hang is given so that it can be waited for.
#pragma once

#include "platform/linux/waiting/worker_threads.h"
#include "platform/notices.h"
#include "platform/waiting.h"

namespace sonarith::waiting {

/// All outlive what is given them.
struct Services {
    WorkerThreads& threads;
    Waiting& waiting;
    Notices& notices; ///< hears what does not answer, and that it answers again
};

} // namespace sonarith::waiting
