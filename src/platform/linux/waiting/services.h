// SPDX-License-Identifier: GPL-3.0-or-later
// Groups the services that are needed for calls that may hang. Such calls access a drive, a mount
// or an open file.
#pragma once

#include "platform/linux/waiting/worker_threads.h"
#include "platform/notices.h"
#include "platform/waiting.h"

namespace sonarith::waiting {

/// The three services must outlive every object that has a copy of this struct.
struct Services {
    WorkerThreads& threads;
    Waiting& waiting;
    Notices& notices; ///< receives a report when a drive or mount hangs, or responds again
};

} // namespace sonarith::waiting
