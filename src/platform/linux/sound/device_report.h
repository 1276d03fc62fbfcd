// SPDX-License-Identifier: GPL-3.0-or-later
// How the pumps report the state of their device. The notices for the user are created elsewhere
// (device_notices.h).
#pragma once

#include <functional>

namespace sonarith::sound {

enum class DeviceState {
    works,  ///< the device plays or delivers sound
    lost,   ///< it cannot be opened or has failed; it is tried again later
    unused, ///< it was closed and is not tried any more
};

/// Called on the pump's thread, or on the thread that destroys the pump. The function must return
/// at once. A state may be reported several times in a row.
using ReportDevice = std::function<void(DeviceState)>;

} // namespace sonarith::sound
