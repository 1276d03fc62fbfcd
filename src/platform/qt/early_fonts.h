// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the desktop's font configuration on another core while the program starts. It chooses no
// font and loads none.
#pragma once

#include <thread>

namespace sonarith {

/// Begins at construction; destruction waits for the end. The configuration is the library's own,
/// one for each process: when Qt first measures a text, which is when it would read it, it finds it
/// done. It is half of the work of building the main window (counted in instructions); how much of
/// it is won depends on a free core.
class EarlyFonts {
  public:
    EarlyFonts();

  private:
    std::jthread reader_;
};

} // namespace sonarith
