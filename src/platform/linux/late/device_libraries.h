// SPDX-License-Identifier: GPL-3.0-or-later
// Loads, in one call, all libraries that the headers of this folder declare (see late_library.h).
#pragma once

namespace sonarith {

/// Called as soon as the main window is shown, so that the first capture does not wait for the
/// loading, and so that a missing library is detected before data can be lost.
void loadDeviceLibraries();

} // namespace sonarith
