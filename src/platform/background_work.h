// SPDX-License-Identifier: GPL-3.0-or-later
// A separate thread that does a part of the work of starting the program. This saves time only if
// another core is free.
#pragma once

#include <functional>
#include <thread>

#include "platform/thread_start.h"

namespace sonarith {

/// The constructor starts the thread; the destructor waits until the work is done. If the system
/// cannot create a thread, `work` is never called. So use this class only for work that the
/// program otherwise does when it first needs the result.
class BackgroundWork {
  public:
    explicit BackgroundWork(std::function<void()> work, const ThreadStarter& starter = startThread);
    ~BackgroundWork();
    BackgroundWork(const BackgroundWork&) = delete;
    BackgroundWork& operator=(const BackgroundWork&) = delete;

  private:
    std::thread thread_; ///< not joinable if the system cannot create a thread
};

} // namespace sonarith
