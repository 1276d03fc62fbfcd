// SPDX-License-Identifier: GPL-3.0-or-later
// Provides MachineSession: a command interpreter with the real disc player, sound card and
// recording. Its functions send the commands of a capture (playing a track and recording it). The
// test supplies the drive; the clock and the notices are fakes. For tests only.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "platform/linux/mci/machine_devices.h"
#include "platform/linux/sound/recording_fixture.h"
#include "support/fake_notices.h"
#include "support/mci_session.h"
#include "support/temp_folder.h"
#include "support/waiting.h"

namespace sonarith::mci {

class MachineSession {
  public:
    explicit MachineSession(std::function<std::shared_ptr<disc::Drive>()> drive,
                            sound::RecordingTiming timing = sound::patientTiming)
        : interpreter(devicesOf(Machine{
              card, [this] { return time; }, std::move(drive),
              [this] { return std::vector<std::filesystem::path>{folder.path()}; },
              [this](const std::string& path) { return folder / path; }, notices, saves, timing})) {
    }

    fakes::Answer send(const std::string& command) { return fakes::ask(interpreter, command); }

    /// Advances the time in steps like the ticks of CaptureMonitor (100 ms, each 3 ms late), until
    /// the disc has reached `milliseconds`.
    void tickUntil(int milliseconds) {
        // The position advances only as far as the disc's reader thread has delivered sound.
        // eventually() sleeps between the steps, so that the reader thread can run.
        EXPECT_TRUE(fakes::eventually([&] {
            if (std::stoi(send("status cd position").reply) >= milliseconds) {
                return true;
            }
            time += std::chrono::milliseconds(103);
            return false;
        }));
    }

    /// Sends the commands that begin and end a capture, in the order in which the logic sends them.
    /// `from` is the rest of the play command: " from 2000" (milliseconds), or empty for the disc's
    /// start.
    void capture(const std::string& from, int endMilliseconds, const std::string& path) {
        EXPECT_EQ(send("open new type waveaudio alias capture"), fakes::fine());
        EXPECT_EQ(send(stereo), fakes::fine());
        EXPECT_EQ(send("open cdaudio alias cd"), fakes::fine());
        EXPECT_EQ(send("set cd time format milliseconds"), fakes::fine());
        EXPECT_EQ(send("record capture overwrite"), fakes::fine());
        time += std::chrono::milliseconds(2);
        EXPECT_EQ(send("play cd" + from), fakes::fine());
        tickUntil(endMilliseconds);
        EXPECT_EQ(send("stop capture"), fakes::fine());
        EXPECT_EQ(send("stop cd"), fakes::fine());
        EXPECT_EQ(send("save capture " + path), fakes::fine());
        EXPECT_EQ(send("close capture"), fakes::fine());
        EXPECT_EQ(send("close cd"), fakes::fine());
    }

    static constexpr const char* stereo =
        "set capture samplespersec 44100 channels 2 bitspersample 16 "
        "alignment 4 bytespersec 176400";

    fakes::TempFolder folder;
    test::FakeNotices notices;
    std::shared_ptr<sound::PendingSaves> saves = std::make_shared<sound::PendingSaves>();
    sound::SoundCard card;
    sound::SoundCard::Time time = std::chrono::seconds(7);
    Interpreter interpreter;
};

} // namespace sonarith::mci
