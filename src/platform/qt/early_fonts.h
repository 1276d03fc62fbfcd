// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the desktop's font configuration on another thread while the program starts. It does not
// choose or load fonts.
#pragma once

#include <thread>

#include "platform/thread_start.h"

namespace sonarith {

/// The constructor starts a thread, which reads the configuration 2 ms later; the destructor waits
/// for the end of the thread. The configuration is stored in the font library, once per process.
/// Without this class, Qt reads the configuration when it first measures a text. Half of the CPU
/// instructions that are executed while the main window is created belong to this reading. The
/// class saves time only if another core is free.
class EarlyFonts {
  public:
    explicit EarlyFonts(const ThreadStarter& starter = startThread);
    ~EarlyFonts();
    EarlyFonts(const EarlyFonts&) = delete;
    EarlyFonts& operator=(const EarlyFonts&) = delete;

  private:
    std::thread reader_; ///< empty if the system cannot create a thread
};

} // namespace sonarith
