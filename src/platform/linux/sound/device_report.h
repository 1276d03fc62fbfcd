// SPDX-License-Identifier: GPL-3.0-or-later
// Defines how a pump (playback_pump.h, capture_pump.h) reports the state of its device.
// device_notices.h creates the notices for the user.
#pragma once

#include <functional>

namespace sonarith::sound {

enum class DeviceState {
    works, ///< the device plays or delivers sound
    /// The device cannot be opened or has failed; the pump will try to open it again. Also reported
    /// if no thread can be started for the pump.
    lost,
    unused, ///< the pump is being destroyed, so the program no longer needs the device
};

/// Called on the pump's thread, or on a thread that is calling a member of the pump. The function
/// must return at once. A state may be reported several times in a row.
using ReportDevice = std::function<void(DeviceState)>;

} // namespace sonarith::sound
