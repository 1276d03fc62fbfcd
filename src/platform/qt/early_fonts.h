// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the desktop's font configuration on another core while the program starts. It does not
// choose or load fonts.
#pragma once

#include <thread>

#include "platform/thread_start.h"

namespace sonarith {

/// The constructor starts a thread that reads the configuration; the destructor waits for its end.
/// The configuration is stored in the font library, once per process. Qt would read it when it
/// first measures a text; with this class it is already there. Reading it is half of the work of
/// building the main window (counted in instructions); time is saved only if a core is free.
class EarlyFonts {
  public:
    explicit EarlyFonts(const ThreadStarter& starter = startThread);
    ~EarlyFonts();
    EarlyFonts(const EarlyFonts&) = delete;
    EarlyFonts& operator=(const EarlyFonts&) = delete;

  private:
    std::thread reader_; ///< not started if the system cannot create a thread: then Qt reads it
};

} // namespace sonarith
