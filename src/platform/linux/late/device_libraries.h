// SPDX-License-Identifier: GPL-3.0-or-later
// Loads all libraries of this folder at once (see late_library.h).
#pragma once

namespace sonarith {

/// Called in advance, so that the first capture does not wait for the loading, and so that a
/// missing library is detected before data can be lost.
void loadDeviceLibraries();

} // namespace sonarith
