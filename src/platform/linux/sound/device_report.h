// SPDX-License-Identifier: GPL-3.0-or-later
// How the pumps say what becomes of their device. What the user reads of it is decided elsewhere
// (device_notices.h).
#pragma once

#include <functional>

namespace sonarith::sound {

enum class DeviceState {
    works,  ///< sound passes
    lost,   ///< it cannot be opened, or has failed; it is tried again later
    unused, ///< it was closed, and is tried no more
};

/// Called on the pump's thread, or on the one that ends the pump; it returns at once. One state may
/// be reported several times in a row.
using ReportDevice = std::function<void(DeviceState)>;

} // namespace sonarith::sound
