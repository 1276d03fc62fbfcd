// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/alsa_input.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "platform/linux/sound/alsa_output.h"
#include "platform/linux/sound/sound_card_thread.h"
#include "support/fake_sound.h"
#include "support/pulse_server.h"
#include "support/sound_matchers.h"
#include "support/waiting.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::eventually;
using fakes::IsSound;
using fakes::MemorySink;
using fakes::pattern;
using fakes::PatternSource;
using fakes::silence;

using Frames = std::vector<StereoFrame>;

/// The length of the longest unbroken part of the test sound (PatternSource) in `frames`.
int longestRun(const Frames& frames) {
    int longest = 0;
    int run = 0;
    StereoFrame before;
    for (const StereoFrame& frame : frames) {
        // The left channel counts up to 32749 and the right one down to -32719; each then begins
        // again.
        const bool follows =
            frame.left == before.left % 32749 + 1 && frame.right == before.right % 32719 - 1;
        run = follows ? run + 1 : 0;
        longest = std::max(longest, run);
        before = frame;
    }
    return longest;
}

TEST(AlsaInput, RecordsTheSoundThatTheServerPlays) {
    fakes::PulseServer server;
    ASSERT_TRUE(server.start());
    // One card plays and another card records, as two programs would.
    SoundCard listener;
    const SoundCardThread listening(listener);
    const auto tape = std::make_shared<MemorySink>();
    listener.setRecordingSource(RecordingSource::externalInput, makeInput("monitor"));
    listener.startRecording(tape, monotonicNow());

    SoundCard player;
    const SoundCardThread playing(player);
    player.setSpeakers(makeOutput("default"));
    player.attach(Line::waveOut, std::make_shared<PatternSource>(), monotonicNow());

    // The recording must contain a fifth of a second without a gap. It may begin with any frame of
    // the sound, because the delay until the server's monitor is open varies.
    EXPECT_TRUE(eventually([&] { return longestRun(tape->frames()) >= frameRate / 5; }));
}

TEST(AlsaInput, IsSilentIfThereIsNoDevice) {
    const auto input = makeInput("no-such-device")->acquire();
    Frames block(441, StereoFrame{1, 1});
    const Pulled pulled = input->pull(block);
    EXPECT_EQ(pulled.frames, 441U);
    EXPECT_EQ(pulled.supply, Supply::flowing);
    EXPECT_THAT(block, IsSound(silence(441)));
    EXPECT_EQ(input->opening(30s), CapturePump::Opening::failed);
}

TEST(AlsaInput, TheListBeginsWithTheDefaultDeviceAndContainsNoDeviceNamedNone) {
    const fakes::PulseServer server; // only its ALSA configuration is needed
    std::vector<std::string> names;
    for (const DeviceEntry& entry : listInputs()) {
        names.push_back(entry.name);
    }
    ASSERT_FALSE(names.empty());
    EXPECT_EQ(names.front(), "default");
    EXPECT_THAT(names, testing::Contains("monitor"));
    EXPECT_THAT(names, testing::Not(testing::Contains("none")));
}

} // namespace
} // namespace sonarith::sound
