// SPDX-License-Identifier: GPL-3.0-or-later
// Sends the player's commands and queries to the disc device; the caller chooses whether the result
// of a command is checked. Transport, DiscPoll, PowerSwitch and PlayerWindow decide what is sent.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "forms/windows.h"
#include "platform/media_control.h"
#include "platform/platform.h"
#include "settings/process_state.h"

namespace sonarith {

enum class CommandCheck {
    unchecked, ///< the status is stored in ProcessState::fileIndex, but not tested for failure
    checked,   ///< a failure closes all devices and unloads the player's panel, without a message
};

class CdCommands {
  public:
    /// All parameters must outlive this object.
    CdCommands(const Platform& platform, ProcessState& process, Windows& windows)
        : platform_(platform), process_(process), windows_(windows) {}
    CdCommands(const CdCommands&) = delete;
    CdCommands& operator=(const CdCommands&) = delete;

    /// Sends one command and returns whether it succeeded. Yields if a checked command fails.
    bool SendMCI(std::string_view command, CommandCheck check);

    /// Sends a query and returns the reply up to its first NUL, at most 29 characters; an empty
    /// text if the query failed. The status is not checked, and fileIndex does not change.
    [[nodiscard]] std::string ask(std::string_view question);

    /// Closes every device of the process, including a recorder. A running capture is stopped and
    /// saved first; stopping it yields. Returns whether the devices were closed.
    bool closeAll(CommandCheck check);

    /// If a capture is running, stops and saves it, and yields. Called before all devices are
    /// closed, before the panel is unloaded, and before the player is switched on. Without this
    /// call, the recording would be lost, or would continue without its disc.
    void saveRunningCapture();

  private:
    void followFailure(int status);

    static constexpr std::size_t replySize = 30;

    const Platform& platform_;
    ProcessState& process_;
    Windows& windows_;
    /// One buffer for all replies. Each query writes its reply (an empty text if the query failed)
    /// and a NUL; the bytes after the NUL keep their old values.
    ReplyBuffer MciBuffer{replySize};
};

} // namespace sonarith
