// SPDX-License-Identifier: GPL-3.0-or-later
// All late libraries at once.
#pragma once

namespace sonarith {

/// Loads them, for when there is time: a first capture does not wait for that, and what is missing
/// shows before anything could be lost by it.
void loadDeviceLibraries();

} // namespace sonarith
