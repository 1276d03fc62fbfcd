// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/alsa_output.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "platform/linux/sound/sound_card_thread.h"
#include "support/fake_sound.h"
#include "support/pulse_server.h"
#include "support/sound_matchers.h"
#include "support/waiting.h"

#if defined(__SANITIZE_THREAD__)
/// The sound server's client library and ALSA's plugins are not built with the thread sanitizer. So
/// the sanitizer does not detect how their threads synchronise. The function suppresses only
/// reports that involve the library or a plugin.
extern "C" const char* __tsan_default_suppressions() {
    return "race:libpulse\nrace:libasound_module\nmutex:libpulse\nthread:libpulse\n";
}
#endif

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::eventually;
using fakes::IsSound;
using fakes::MemorySink;
using fakes::pattern;
using fakes::PatternSource;

using Frames = std::vector<StereoFrame>;

/// Whether `whole` contains `part` contiguously.
bool holds(const Frames& whole, const Frames& part) {
    return std::search(whole.begin(), whole.end(), part.begin(), part.end()) != whole.end();
}

/// A card that plays the test sound through `output` and records it, in real time.
class PlayingCard {
  public:
    explicit PlayingCard(const std::string& output, std::int64_t length = PatternSource::endless,
                         PlaybackTiming timing = {})
        : length_(length), disc_(std::make_shared<PatternSource>(length)) {
        card_.setSpeakers(makeOutput(output, timing));
        const auto now = monotonicNow();
        card_.startRecording(tape_, now);
        card_.attach(Line::compactDisc, disc_, now);
    }
    bool awaitFrames(std::int64_t more) const {
        const std::int64_t end = disc_->position() + more;
        return eventually([&] { return disc_->position() >= end; });
    }
    void changeOutput(const std::string& output) { card_.setSpeakers(makeOutput(output)); }
    /// Stops the recording, and expects in it all frames that the disc has played, without gaps.
    void expectWholeCapture() {
        const std::int64_t played = disc_->position();
        card_.stopRecording(monotonicNow());
        Frames recorded = tape_->frames();
        // Silence at the beginning is removed: the card's thread may have run between the
        // constructor's calls of startRecording() and attach().
        const auto isSound = [](StereoFrame frame) {
            return frame != StereoFrame{};
        };
        recorded.erase(recorded.begin(), std::find_if(recorded.begin(), recorded.end(), isSound));
        ASSERT_GE(static_cast<std::int64_t>(recorded.size()), played);
        if (static_cast<std::int64_t>(recorded.size()) > length_) {
            recorded.resize(static_cast<std::size_t>(length_)); // silence follows the disc's end
        }
        EXPECT_THAT(recorded, IsSound(pattern(0, recorded.size())));
    }

  private:
    std::int64_t length_;
    SoundCard card_;
    SoundCardThread thread_{card_};
    std::shared_ptr<MemorySink> tape_ = std::make_shared<MemorySink>();
    std::shared_ptr<PatternSource> disc_;
};

/// Half a second of sound, in frames. The tests wait until this number of frames, or a multiple of
/// it, has been played.
constexpr std::int64_t halfSecond = frameRate / 2;

TEST(AlsaOutput, DeliversEverySampleOfASoundToTheServer) {
    fakes::PulseServer server;
    ASSERT_TRUE(server.start());
    ASSERT_TRUE(server.listen());
    constexpr std::int64_t length = 25'000;
    PlayingCard playing("default", length);
    EXPECT_TRUE(eventually([&] { return holds(server.played(), pattern(0, length)); }));
    playing.expectWholeCapture();
}

TEST(AlsaOutput, DoesNotDisturbARecordingIfTheServerIsKilledDuringPlayback) {
    fakes::PulseServer server;
    ASSERT_TRUE(server.start());
    PlayingCard playing("default");
    ASSERT_TRUE(playing.awaitFrames(halfSecond));
    server.kill();
    EXPECT_TRUE(playing.awaitFrames(halfSecond));
    playing.expectWholeCapture();
}

TEST(AlsaOutput, PlaysAgainWhenTheServerRunsAgain) {
    fakes::PulseServer server;
    ASSERT_TRUE(server.start());
    PlaybackTiming timing;
    timing.retryAfter = 50ms;
    PlayingCard playing("default", PatternSource::endless, timing);
    ASSERT_TRUE(playing.awaitFrames(halfSecond));
    server.kill();
    ASSERT_TRUE(playing.awaitFrames(halfSecond));
    ASSERT_TRUE(server.start());
    ASSERT_TRUE(server.listen());
    EXPECT_TRUE(eventually([&] {
        const Frames played = server.played();
        return std::count(played.begin(), played.end(), StereoFrame{}) <
               static_cast<std::ptrdiff_t>(played.size());
    }));
    playing.expectWholeCapture();
}

TEST(AlsaOutput, DoesNotBlockTheCardAndCanBeDestroyedIfTheServerHangs) {
    fakes::PulseServer server;
    ASSERT_TRUE(server.start());
    {
        PlayingCard playing("default");
        ASSERT_TRUE(playing.awaitFrames(halfSecond));
        server.freeze();
        EXPECT_TRUE(playing.awaitFrames(3 * halfSecond));
        playing.changeOutput("none");
        EXPECT_TRUE(playing.awaitFrames(halfSecond));
        playing.expectWholeCapture();
    }
    server.kill(); // ends the call in which the left-behind thread of the first output hangs
}

TEST(AlsaOutput, DisturbsNoRecordingAndWritesNoMessagesIfTheDeviceDoesNotExist) {
    testing::internal::CaptureStderr();
    {
        PlayingCard playing("no-such-device");
        EXPECT_TRUE(playing.awaitFrames(halfSecond));
        playing.expectWholeCapture();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "")
        << "the sound libraries must write no messages";
}

TEST(AlsaOutput, IsANullOutputForAnEmptyNameAndForTheNameNone) {
    EXPECT_NE(std::dynamic_pointer_cast<NullOutput>(makeOutput("")), nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<NullOutput>(makeOutput("none")), nullptr);
    EXPECT_EQ(std::dynamic_pointer_cast<NullOutput>(makeOutput("default")), nullptr);
}

TEST(AlsaOutput, ListsTheConfiguredDevicesBetweenTheDefaultDeviceAndTheEntryNone) {
    const fakes::PulseServer server; // only its ALSA configuration is needed
    const std::vector<DeviceEntry> outputs = listOutputs();
    ASSERT_GE(outputs.size(), 3U);
    EXPECT_EQ(outputs.front().name, "default");
    EXPECT_EQ(outputs.back().name, "none");
    std::vector<std::string> names;
    for (const DeviceEntry& output : outputs) {
        names.push_back(output.name);
        EXPECT_FALSE(output.description.empty());
        EXPECT_EQ(output.description.find('\n'), std::string::npos);
    }
    EXPECT_THAT(names, testing::Contains("monitor"));
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end())
        << "each device must be listed only once";
}

} // namespace
} // namespace sonarith::sound
