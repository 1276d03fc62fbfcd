// SPDX-License-Identifier: GPL-3.0-or-later
// Connects to the session bus while the main window is being built. Uses no service on the bus.
#pragma once

#include <thread>

#include "platform/thread_start.h"

namespace sonarith {

/// The constructor starts a thread that connects to the bus; the destructor waits for the end of
/// the thread. Qt stores the connection for the whole process. Without this class, Qt would connect
/// when the first window is shown, because assistive programs are reached over the bus. The window
/// would then be delayed by several replies of the bus or, if no bus is running, until the attempt
/// to start a bus has failed. Create this object after the QApplication.
class EarlyBus {
  public:
    explicit EarlyBus(const ThreadStarter& starter = startThread);
    ~EarlyBus();
    EarlyBus(const EarlyBus&) = delete;
    EarlyBus& operator=(const EarlyBus&) = delete;

  private:
    std::thread connecting_; ///< empty if the system cannot create a thread; Qt then connects later
};

} // namespace sonarith
