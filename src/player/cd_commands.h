// SPDX-License-Identifier: GPL-3.0-or-later
// Sends device commands for the player: with or without a check of their result, and queries with
// one reply buffer. Transport and poll decide which commands are sent.
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
    unchecked, ///< the status is stored in fileIndex, but no code tests it
    checked,   ///< a failure closes all devices and unloads the panel, without a message
};

class CdCommands {
  public:
    /// All must outlive this.
    CdCommands(const Platform& platform, ProcessState& process, Windows& windows)
        : platform_(platform), process_(process), windows_(windows) {}
    CdCommands(const CdCommands&) = delete;
    CdCommands& operator=(const CdCommands&) = delete;

    /// Sends one command and returns whether it succeeded. Yields if a checked one fails.
    bool SendMCI(std::string_view command, CommandCheck check);

    /// Sends a query and returns the reply up to its first NUL: at most 29 characters, none if the
    /// query failed. The result is not checked, and fileIndex does not change.
    [[nodiscard]] std::string ask(std::string_view question);

    /// Closes every device of the process, including a recorder. A running capture is stopped and
    /// saved first; this yields.
    bool closeAll(CommandCheck check);

    /// Stops everything if a capture is running, which saves its recording. Otherwise the recording
    /// would be lost or continue without its disc. Yields if a capture is running.
    void saveRunningCapture();

  private:
    void followFailure(int status);

    static constexpr std::size_t replySize = 30;

    const Platform& platform_;
    ProcessState& process_;
    Windows& windows_;
    /// One buffer for all replies; it is not cleared between them.
    ReplyBuffer MciBuffer{replySize};
};

} // namespace sonarith
