// SPDX-License-Identifier: GPL-3.0-or-later
// How the player sends device commands: with or without a check of their outcome, and questions
// with one reply buffer. Which commands are sent when is the business of the transport and the
// poll.
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
    unchecked, ///< the status goes to fileIndex, and nothing tests it there
    checked,   ///< a failure closes all devices and unloads the panel, without a message
};

class CdCommands {
  public:
    /// All outlive this.
    CdCommands(const Platform& platform, ProcessState& process, Windows& windows)
        : platform_(platform), process_(process), windows_(windows) {}
    CdCommands(const CdCommands&) = delete;
    CdCommands& operator=(const CdCommands&) = delete;

    /// Sends one command; whether it succeeded. Yields if a checked one fails.
    bool SendMCI(std::string_view command, CommandCheck check);

    /// Sends a question and returns the reply up to its first NUL: 29 characters at most, none for
    /// a question that failed. Not checked, and fileIndex stays.
    [[nodiscard]] std::string ask(std::string_view question);

    /// Closes every device of the process, a recorder among them; a capture that runs is stopped
    /// and saved first. Yields in that case.
    bool closeAll(CommandCheck check);

    /// What "Stop Everything" does, if a capture runs: its recording would be lost, or go on
    /// without its disc. Yields in that case.
    void saveRunningCapture();

  private:
    void followFailure(int status);

    static constexpr std::size_t replySize = 30;

    const Platform& platform_;
    ProcessState& process_;
    Windows& windows_;
    /// One buffer for all replies, never filled with blanks again.
    ReplyBuffer MciBuffer{replySize};
};

} // namespace sonarith
