// SPDX-License-Identifier: GPL-3.0-or-later
// The interface of an open device: it carries out every command except "open" and "close", which
// interpreter.h handles.
#pragma once

#include "platform/linux/mci/command_parser.h"
#include "platform/linux/mci/mci_errors.h"

namespace sonarith::mci {

class Device {
  public:
    Device() = default;
    virtual ~Device() = default;
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    /// Never waits for sound to be played or recorded. Errors: unsupportedFunction for a verb that
    /// the device does not support; others depend on the command's words and the device's state.
    [[nodiscard]] virtual Reply run(const Command& command) = 0;
};

} // namespace sonarith::mci
