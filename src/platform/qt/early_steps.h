// SPDX-License-Identifier: GPL-3.0-or-later
// Steps that Qt would otherwise carry out while the main window is created and shown, each when its
// result is first needed. They are carried out earlier, on other threads, so that the window waits
// less.
#pragma once

#include "platform/background_work.h"

namespace sonarith {

/// Runs both steps below in the background: first the fonts, which the main window needs first,
/// then the bus. Must be called on the main thread, before the QApplication is created. The
/// destructor of the result waits until the steps are done.
[[nodiscard]] BackgroundWork startEarlySteps();

/// Reads the desktop's font configuration; the font library stores it for the whole process.
/// Neither chooses nor loads fonts. Without this function, Qt reads the configuration when it first
/// measures a text. Half of the CPU instructions that create the main window are then for this
/// reading. Lowers the priority of the calling thread for the rest of the thread's life.
void readFontConfiguration();

/// Connects to the session bus; Qt stores the connection for the whole process. Uses no service on
/// the bus. Without this function, Qt connects when the program sets the first accessible name,
/// because assistive programs are reached over the bus. The window then waits for several replies
/// of the bus. If no bus is running, the window waits until the attempt to start a bus has failed.
void connectToSessionBus();

} // namespace sonarith
