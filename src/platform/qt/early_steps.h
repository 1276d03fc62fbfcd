// SPDX-License-Identifier: GPL-3.0-or-later
// Steps that Qt would otherwise carry out while the main window is created and shown, each when its
// result is first needed. main() carries them out earlier, each on a thread of its own
// (BackgroundWork), so that the window waits less.
#pragma once

namespace sonarith {

/// Reads the desktop's font configuration, which the font library stores once per process. Chooses
/// and loads no fonts. Without this function, Qt reads the configuration when it first measures a
/// text. This reading is then half of the CPU instructions that create the main window. Waits 2 ms
/// before it reads: during this time the main thread loads libraries, and simultaneous reading and
/// loading would slow each other down. To be started before the QApplication is created.
void readFontConfiguration();

/// Connects to the session bus; Qt stores the connection for the whole process. Uses no service on
/// the bus. Without this function, Qt connects when the first window is shown, because assistive
/// programs are reached over the bus. The window then waits for several replies of the bus. If no
/// bus is running, the window waits until the attempt to start a bus has failed. To be started
/// after the QApplication has been created.
void connectToSessionBus();

} // namespace sonarith
