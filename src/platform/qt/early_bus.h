// SPDX-License-Identifier: GPL-3.0-or-later
// Connects to the session bus while the main window is being built. It sends nothing and knows none
// of the services on the bus.
#pragma once

#include <thread>

#include "platform/thread_start.h"

namespace sonarith {

/// The constructor starts a thread that connects; the destructor waits for its end. Qt stores the
/// connection for the whole process. Without this class Qt would connect when the first window is
/// shown, for assistive programs, and the window would wait for the bus: for several replies, or,
/// if no bus is running, until the attempt to start one has failed. Create it after the
/// QApplication.
class EarlyBus {
  public:
    explicit EarlyBus(const ThreadStarter& starter = startThread);
    ~EarlyBus();
    EarlyBus(const EarlyBus&) = delete;
    EarlyBus& operator=(const EarlyBus&) = delete;

  private:
    std::thread connecting_; ///< not started if the system cannot create a thread: then Qt connects
};

} // namespace sonarith
