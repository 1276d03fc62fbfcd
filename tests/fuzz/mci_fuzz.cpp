// SPDX-License-Identifier: GPL-3.0-or-later
// Sends arbitrary commands to the whole command interpreter on a machine of fakes. The first byte
// of an input chooses the disc. Each line of the remaining bytes is one command. Between two
// commands a playing disc advances.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string_view>

#include "platform/linux/mci/interpreter.h"
#include "require.h"
#include "support/fake_mci_devices.h"

namespace {

using namespace sonarith;
using fuzz::require;

disc::Table tableFor(std::uint8_t choice) {
    disc::Table table;
    // Bits 0 to 6: number of tracks, including 0 and more than 99. Bit 7: every third track is a
    // data track.
    for (int i = 0; i < (choice & 127); ++i) {
        const bool data = (choice & 128) != 0 && i % 3 == 2;
        // The first track is empty, and track 51 is far longer than any disc.
        const std::int64_t sectors = i == 50 ? std::numeric_limits<std::int32_t>::max() : i * 977;
        table.tracks.push_back({data ? disc::TrackKind::data : disc::TrackKind::audio, sectors});
    }
    return table;
}

void checkReply(int status, const ReplyBuffer& reply, const mci::Interpreter& interpreter) {
    const std::size_t end = reply.bytes().find('\0');
    require(end != std::string::npos);         // every reply is written and terminated
    require(status == mciSuccess || end == 0); // a failed command has an empty reply
    require((status == mciSuccess) == interpreter.errorString(status).empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    fakes::FakeMachine machine;
    if (data[0] != 255) { // 255: the machine has no drive
        machine.drive = std::make_shared<fakes::FakeDrive>(
            std::make_shared<fakes::FakeDisc>(tableFor(data[0])));
    }
    mci::Interpreter interpreter(machine.devices());
    std::string_view rest(reinterpret_cast<const char*>(data + 1), size - 1);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        ReplyBuffer reply(64);
        const int status = interpreter.sendString(rest.substr(0, end), &reply);
        checkReply(status, reply, interpreter);
        if (machine.transport) {
            machine.transport->advance(disc::framesPerSector + 1);
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return 0;
}
