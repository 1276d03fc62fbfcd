// SPDX-License-Identifier: GPL-3.0-or-later
// All late-loaded libraries at once.
#pragma once

namespace sonarith {

/// Loads all libraries in advance, so that the first capture does not wait for the loading, and a
/// missing library is detected before data could be lost.
void loadDeviceLibraries();

} // namespace sonarith
