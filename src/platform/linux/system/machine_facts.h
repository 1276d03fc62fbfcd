// SPDX-License-Identifier: GPL-3.0-or-later
// Parses the kernel's texts about memory, processors, keyboards and the kernel's version. It opens
// no file.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/system_information.h"

namespace sonarith::system_information {

/// Parses the text of /proc/meminfo. totalBytes or availableBytes is 0 if its line is missing or
/// contains no number. loadPercent is 0 if totalBytes is 0.
[[nodiscard]] MemoryStatus memoryIn(std::string_view memInfo);

struct OnlineProcessors {
    int count = 0;
    std::uint64_t mask = 0; ///< bit n is set if the list contains processor n; n is below 64
};
/// Parses a list like that in /sys/devices/system/cpu/online: "0-3,5". Parsing ends at the first
/// part that is neither a number nor an ascending range, or that exceeds 65535. This part is not
/// counted.
[[nodiscard]] OnlineProcessors processorsIn(std::string_view list);

struct Keyboard {
    bool present = false;
    int functionKeys = 0;
};
/// The keyboard with the most function keys, from the text of /proc/bus/input/devices. Only F1 to
/// F12 are counted. Buttons and remote controls that the kernel lists as keyboards have no letters
/// and are ignored.
[[nodiscard]] Keyboard keyboardIn(std::string_view inputDevices);

/// The first two numbers of a kernel's release: 6 and 1 for "6.1.0-32-amd64"; empty if the
/// release does not begin with a number, a dot and a number.
[[nodiscard]] std::optional<SystemVersion> versionIn(std::string_view release);

} // namespace sonarith::system_information
