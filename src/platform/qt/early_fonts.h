// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the desktop's font configuration on another core while the program starts. It does not
// choose or load fonts.
#pragma once

#include <thread>

#include "platform/thread_start.h"

namespace sonarith {

/// The constructor starts the reading; the destructor waits for its end. The configuration belongs
/// to the library, one per process: Qt would read it when it first measures a text, and then finds
/// it ready. Reading it is half of the work of building the main window (counted in instructions);
/// how much time is saved depends on a free core.
class EarlyFonts {
  public:
    explicit EarlyFonts(const ThreadStarter& starter = startThread);
    ~EarlyFonts();
    EarlyFonts(const EarlyFonts&) = delete;
    EarlyFonts& operator=(const EarlyFonts&) = delete;

  private:
    std::thread reader_; ///< none if the system has no thread left: Qt reads it then
};

} // namespace sonarith
