// SPDX-License-Identifier: GPL-3.0-or-later
// All late-loaded libraries at once.
#pragma once

namespace sonarith {

/// Loads them in advance, so that a first capture does not wait for it and a missing library shows
/// before data could be lost.
void loadDeviceLibraries();

} // namespace sonarith
