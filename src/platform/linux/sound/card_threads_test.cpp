// SPDX-License-Identifier: GPL-3.0-or-later
// While the card's own thread runs, several other threads use the mixer, read peaks, record, use
// the wave input and change the recording source. In the program, only the logic thread does this.
// Under the thread sanitizer, these tests detect data races.
#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "platform/linux/sound/capture_fixture.h"
#include "platform/linux/sound/card_mixer.h"
#include "platform/linux/sound/card_wave_input.h"
#include "platform/linux/sound/external_input.h"
#include "support/fake_sound.h"
#include "support/sound_matchers.h"
#include "support/waiting.h"
#include "support/wave_formats.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::eventually;
using fakes::IsSound;
using fakes::MemorySink;
using fakes::pattern;
using fakes::PatternSource;

TEST(CardThreads, RecordATrackBitForBitWhileTheMixerIsUsed) {
    SoundCard card;
    const SoundCardThread thread(card);
    card.setSpeakers(std::make_shared<MemorySink>());
    const auto disc = std::make_shared<PatternSource>();
    const auto tape = std::make_shared<MemorySink>();
    card.startRecording(tape, monotonicNow());
    card.attach(Line::compactDisc, disc, monotonicNow());
    std::atomic<bool> done = false;

    std::thread logic([&] {
        CardMixer mixer(&card);
        MixerHandle handle = 0;
        EXPECT_EQ(mixer.open(handle), MixerResult::noError);
        std::int32_t step = 0;
        while (!done) {
            for (std::uint32_t control = 1; control <= 10; ++control) {
                std::int32_t value = ++step % 65536;
                MixerControlDetails details{mixerControlDetailsSize, control, 1, 0, 4, &value};
                static_cast<void>(mixer.setControlDetails(handle, details));
                EXPECT_EQ(mixer.getControlDetails(handle, details), MixerResult::noError);
                EXPECT_GE(value, 0);
                EXPECT_LE(value, 65535);
            }
        }
    });
    std::thread reader([&] {
        while (!done) {
            EXPECT_LE(card.recorderPeak(monotonicNow()), 32768);
            EXPECT_LE(card.linePeak(Line::waveOut, monotonicNow()), 32768);
            card.tone().setBass(card.recorderPeak(monotonicNow()) % 65536);
        }
    });
    EXPECT_TRUE(eventually([&] { return disc->position() > frameRate / 2; }));
    done = true;
    logic.join();
    reader.join();
    card.detach(Line::compactDisc);
    card.stopRecording(monotonicNow());
    std::vector<StereoFrame> recorded = tape->frames();
    const auto played = static_cast<std::size_t>(disc->position());
    // The recording has silence before the disc was attached and after it was detached.
    const auto first = std::find_if(recorded.begin(), recorded.end(),
                                    [](StereoFrame frame) { return frame != StereoFrame{}; });
    ASSERT_GE(static_cast<std::size_t>(recorded.end() - first), played);
    EXPECT_THAT(std::vector(first, first + static_cast<std::ptrdiff_t>(played)),
                IsSound(pattern(0, played)));
}

TEST(CardThreads, LeaveNoExternalInputOpenAfterConcurrentUse) {
    const auto device = std::make_shared<CaptureDevice>();
    {
        SoundCard card;
        const SoundCardThread thread(card);
        const auto external =
            std::make_shared<ExternalInput>("microphone", openerOf(device), nullptr,
                                            CaptureTiming{.retryAfter = 1ms, .patience = 30s});
        std::atomic<bool> done = false;
        std::thread listening([&] {
            CardWaveInput input(card);
            for (int i = 0; i < 60; ++i) {
                WaveInHandle handle = 0;
                EXPECT_EQ(input.open(handle, 0, fakes::pcmFormat(1, 8000, 8)), WaveResult::noError);
                EXPECT_EQ(input.start(handle), WaveResult::noError);
                EXPECT_EQ(input.reset(handle), WaveResult::noError);
                EXPECT_EQ(input.close(handle), WaveResult::noError);
            }
            done = true;
        });
        std::thread recording([&] {
            while (!done) {
                card.startRecording(std::make_shared<MemorySink>(), monotonicNow());
                card.stopRecording(monotonicNow());
            }
        });
        std::thread choosing([&] {
            while (!done) {
                card.setRecordingSource(RecordingSource::externalInput, external);
                device->provide(100);
                card.setRecordingSource(RecordingSource::compactDisc);
            }
        });
        listening.join();
        recording.join();
        choosing.join();
        EXPECT_FALSE(card.active()) << "the external input must not remain attached to its line";
    }
    EXPECT_EQ(device->opened, device->closed);
}

} // namespace
} // namespace sonarith::sound
