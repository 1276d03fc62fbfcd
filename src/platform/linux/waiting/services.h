// SPDX-License-Identifier: GPL-3.0-or-later
// The services that every object that may hang needs for being waited for.
#pragma once

#include "platform/linux/waiting/worker_threads.h"
#include "platform/notices.h"
#include "platform/waiting.h"

namespace sonarith::waiting {

/// All must outlive the objects that use them.
struct Services {
    WorkerThreads& threads;
    Waiting& waiting;
    Notices& notices; ///< receives what does not respond, and when it responds again
};

} // namespace sonarith::waiting
