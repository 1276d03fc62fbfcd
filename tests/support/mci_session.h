// SPDX-License-Identifier: GPL-3.0-or-later
// Creates a command interpreter on a machine of fakes, for tests that send commands. The replies
// can be compared and printed.
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "platform/linux/mci/interpreter.h"
#include "support/fake_mci_devices.h"

namespace sonarith::fakes {

/// Status and reply of one command.
struct Answer {
    mci::MciError error = mci::MciError::none;
    std::string reply;

    friend bool operator==(const Answer&, const Answer&) = default;
    friend void PrintTo(const Answer& answer, std::ostream* out) {
        *out << static_cast<int>(answer.error) << " \"" << answer.reply << '"';
    }
};

/// The answer to a successful command with this reply.
inline Answer said(std::string reply) {
    return {mci::MciError::none, std::move(reply)};
}
/// The answer to a successful command without a reply.
inline Answer fine() {
    return said("");
}
/// The answer to a command that failed with this error.
inline Answer refused(mci::MciError error) {
    return {error, ""};
}

inline Answer ask(MediaControl& control, std::string_view command) {
    ReplyBuffer buffer(256);
    const int status = control.sendString(command, &buffer);
    const std::string& bytes = buffer.bytes();
    return {static_cast<mci::MciError>(status), bytes.substr(0, bytes.find('\0'))};
}

/// An interpreter on a machine with a drive. The drive contains a disc unless `table` is empty.
class MciSession {
  public:
    explicit MciSession(const disc::Table& table = {}) {
        machine.drive = std::make_shared<FakeDrive>(
            table.tracks.empty() ? nullptr : std::make_shared<FakeDisc>(table));
    }

    Answer send(std::string_view command) { return ask(interpreter, command); }

    FakeMachine machine;
    mci::Interpreter interpreter{machine.devices()};
};

} // namespace sonarith::fakes
