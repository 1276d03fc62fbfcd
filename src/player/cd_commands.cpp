// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/cd_commands.h"

#include "platform/text/cut_at_null.h"

namespace sonarith {

namespace {
constexpr std::string_view closeAllCommand = "close all";
} // namespace

bool CdCommands::SendMCI(std::string_view command, CommandCheck check) {
    const int status = platform_.media.sendString(command);
    if (check == CommandCheck::unchecked) {
        process_.fileIndex = status;
    } else if (status != mciSuccess) {
        followFailure(status);
    }
    return status == mciSuccess;
}

std::string CdCommands::ask(std::string_view question) {
    platform_.media.sendString(question, &MciBuffer);
    return CutAtNull(MciBuffer.bytes());
}

bool CdCommands::closeAll(CommandCheck check) {
    saveRunningCapture();
    return SendMCI(closeAllCommand, check);
}

void CdCommands::saveRunningCapture() {
    if (windows_.Form1.tmrRecord.enabled()) {
        windows_.Form1.Command8.click();
    }
}

void CdCommands::followFailure(int status) {
    // Deliberate: the error message is read and discarded; nothing is shown.
    static_cast<void>(platform_.media.errorString(status));
    closeAll(CommandCheck::unchecked);
    // Deliberate: all devices are closed a second time. Neither close is checked, because a checked
    // close that fails would call this function again, without end.
    platform_.media.sendString(closeAllCommand);
    windows_.Form4.unload();
}

} // namespace sonarith
