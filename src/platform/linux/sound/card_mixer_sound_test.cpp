// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the effect of the mixer's controls on the sound.
#include "platform/linux/sound/card_mixer.h"

#include <gmock/gmock.h>

#include <complex>

#include "platform/linux/sound/card_mixer_fixture.h"
#include "support/fake_sound.h"
#include "support/sound_matchers.h"
#include "support/tones.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::amplitudeAt;
using fakes::decibels;
using fakes::IsSound;
using fakes::MemorySink;
using fakes::pattern;
using fakes::PatternSource;
using fakes::silence;
using fakes::ToneSource;

using Frames = std::vector<StereoFrame>;

TEST_F(CardMixerTest, VolumesAndMutesChangeTheOutput) {
    constexpr double hz = 1000;
    play(Line::compactDisc, std::make_shared<ToneSource>(hz, 20'000));
    const auto heardDb = [&] {
        const Frames played = hear(1s);
        return decibels(amplitudeAt(fakes::leftOf(played), hz, frameRate) / 20'000);
    };
    EXPECT_NEAR(heardDb(), 0, 0.01);
    EXPECT_EQ(set(4, mixer_control::volume, 32768), MixerResult::noError);
    EXPECT_NEAR(heardDb(), -6.02, 0.2);
    EXPECT_EQ(set(0x1005, mixer_control::volume, 6553), MixerResult::noError);
    EXPECT_NEAR(heardDb(), -26.02, 0.2);
    EXPECT_EQ(set(4, mixer_control::volume, 65535), MixerResult::noError);
    EXPECT_EQ(set(0x1005, mixer_control::volume, 65535), MixerResult::noError);
    EXPECT_EQ(set(0x1008, mixer_control::mute, 1), MixerResult::noError);
    EXPECT_NEAR(heardDb(), 0, 0.01) << "the mute of another line must have no effect";
    EXPECT_EQ(set(0x1005, mixer_control::mute, 1), MixerResult::noError);
    EXPECT_THAT(hear(100ms), IsSound(silence(4410)));
    EXPECT_EQ(set(0x1005, mixer_control::mute, 0), MixerResult::noError);
    EXPECT_NEAR(heardDb(), 0, 0.01);
    EXPECT_EQ(set(4, mixer_control::mute, 1), MixerResult::noError);
    EXPECT_THAT(hear(100ms), IsSound(silence(4410)));
}

/// The gain in dB at `hz` by the analog model in shelf_filter.h; `side` is 1 for the low shelf and
/// -1 for the high shelf.
double shelfDb(double hz, double cornerHz, double gainDb, int side) {
    const auto warped = [](double frequency) {
        return std::tan(std::numbers::pi * frequency / frameRate);
    };
    const double ratio = warped(hz) / warped(cornerHz);
    const std::complex<double> s =
        side > 0 ? std::complex<double>(0, ratio) : 1.0 / std::complex<double>(0, ratio);
    const double a = std::pow(10, gainDb / 40);
    const std::complex<double> width = std::sqrt(2 * a) * s;
    return decibels(std::abs(a * (s * s + width + a) / (a * s * s + width + 1.0)));
}

struct ToneCase {
    std::uint32_t control;
    double cornerHz;
    int side;
};

class CardMixerTone : public CardMixerTest, public testing::WithParamInterface<ToneCase> {};

TEST_P(CardMixerTone, FollowsItsCurveWithinAFifthOfADecibel) {
    constexpr double amplitude = 4000; // does not clip even with 12 dB more
    for (const std::int32_t position : {0, 16384, 32767, 49152, 65535}) {
        const double gain = (position - 32768) * 12.0 / 32768;
        EXPECT_EQ(set(4, GetParam().control, position), MixerResult::noError);
        for (const double hz : {40.0, 100.0, 200.0, 1000.0, 5000.0, 10'000.0, 15'000.0}) {
            play(Line::compactDisc, std::make_shared<ToneSource>(hz, amplitude));
            hear(200ms); // until the gain has reached its new value
            const Frames played = hear(250ms);
            const double expected = shelfDb(hz, GetParam().cornerHz, gain, GetParam().side);
            const double left = amplitudeAt(fakes::leftOf(played), hz, frameRate) / amplitude;
            const double right = amplitudeAt(fakes::rightOf(played), hz, frameRate) / amplitude;
            EXPECT_NEAR(decibels(left), expected, 0.2)
                << hz << " Hz at slider position " << position;
            // ToneSource has half the amplitude on the right channel.
            EXPECT_NEAR(decibels(right * 2), expected, 0.2)
                << hz << " Hz at slider position " << position;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(BassAndTreble, CardMixerTone,
                         testing::Values(ToneCase{mixer_control::bass, 200, 1},
                                         ToneCase{mixer_control::treble, 5000, -1}));

TEST_F(CardMixerTest, ShelfDbHasTheDocumentedGains) {
    // tone_control.h states the gains. CardMixerTone checks that the sound has the gains of
    // shelfDb().
    EXPECT_NEAR(shelfDb(100, ToneControl::bassCornerHz, 12, 1), 11, 0.5);
    EXPECT_NEAR(shelfDb(10'000, ToneControl::trebleCornerHz, 12, -1), 11, 0.5);
    EXPECT_LT(shelfDb(1000, ToneControl::bassCornerHz, 12, 1), 0.1);
    EXPECT_LT(shelfDb(1000, ToneControl::trebleCornerHz, 12, -1), 0.1);
}

TEST_F(CardMixerTest, NeutralBassAndTrebleChangeNoSample) {
    play(Line::compactDisc, std::make_shared<PatternSource>()); // soft and loud samples
    EXPECT_THAT(hear(2s), IsSound(pattern(0, 88'200)));
}

TEST_F(CardMixerTest, BassAndTrebleChangeNoSampleWhenTheyAreNeutralAgain) {
    play(Line::compactDisc, std::make_shared<PatternSource>());
    EXPECT_EQ(set(4, mixer_control::bass, 65535), MixerResult::noError);
    EXPECT_EQ(set(4, mixer_control::treble, 0), MixerResult::noError);
    EXPECT_NE(hear(1s), pattern(0, 44'100));
    EXPECT_EQ(set(4, mixer_control::bass, 32768), MixerResult::noError);
    EXPECT_EQ(set(4, mixer_control::treble, 32768), MixerResult::noError);
    // Plays until both gains are neutral and the level, which was reduced to prevent clipping, is
    // full again.
    hear(4s);
    EXPECT_THAT(hear(1s), IsSound(pattern(5 * 44'100, 44'100)));
}

TEST_F(CardMixerTest, RecordsBitForBitAtAnySliderPosition) {
    const auto tape = std::make_shared<MemorySink>();
    card.startRecording(tape, now);
    play(Line::compactDisc, std::make_shared<PatternSource>());
    for (int step = 0; step < 200; ++step) {
        const std::int32_t position = step * 7919 % 65536;
        for (const ExpectedControl& expected : allControls()) {
            if (expected.highest > 0) {
                EXPECT_EQ(set(expected.line, expected.type, std::min(position, expected.highest)),
                          MixerResult::noError);
            }
        }
        hear(10ms);
    }
    card.stopRecording(now);
    EXPECT_THAT(tape->frames(), IsSound(pattern(0, 88'200)));
}

/// The largest change of the slope between neighbouring samples; it is large if there is a click.
double roughness(const std::vector<double>& samples) {
    double most = 0;
    for (std::size_t i = 2; i < samples.size(); ++i) {
        most = std::max(most, std::abs(samples[i] - 2 * samples[i - 1] + samples[i - 2]));
    }
    return most;
}

TEST_F(CardMixerTest, AMovedToneSliderCausesNoClick) {
    // A low tone is used because its slope hardly changes from sample to sample.
    for (const std::uint32_t type : {mixer_control::bass, mixer_control::treble}) {
        play(Line::compactDisc, std::make_shared<ToneSource>(60, 7000));
        hear(200ms);
        for (const std::int32_t position : {65535, 0, 65535, 32768, 0, 32768}) {
            EXPECT_EQ(set(4, type, position), MixerResult::noError);
            const Frames played = hear(300ms);
            // The largest boost, 12 dB, raises the amplitude from 7000 to 28000. At 60 Hz the slope
            // then changes by up to 2 per sample; rounding the sample values to integers adds at
            // most 2. A step of the gain between two samples would change the slope by thousands.
            EXPECT_LT(roughness(fakes::leftOf(played)), 8)
                << "control type " << type << " moved to " << position;
        }
    }
}

TEST_F(CardMixerTest, ABoostedLoudSoundIsAttenuatedAndNotClipped) {
    constexpr double hz = 60;
    play(Line::compactDisc, std::make_shared<ToneSource>(hz, 32'700));
    EXPECT_EQ(set(4, mixer_control::bass, 65535), MixerResult::noError);
    hear(1s);
    const std::vector<double> played = fakes::leftOf(hear(1s));
    const double whole = amplitudeAt(played, hz, frameRate);
    EXPECT_NEAR(decibels(whole / 32'767), 0, 0.1) << "the sound must have the maximum level";
    // Clipping would add a third harmonic with up to a third of the tone's amplitude.
    EXPECT_LT(decibels(amplitudeAt(played, 3 * hz, frameRate) / whole), -50);
    EXPECT_LT(decibels(amplitudeAt(played, 5 * hz, frameRate) / whole), -50);
}

TEST_F(CardMixerTest, TheAttenuationEndsAfterALoudPassage) {
    EXPECT_EQ(set(4, mixer_control::bass, 65535), MixerResult::noError);
    play(Line::compactDisc, std::make_shared<ToneSource>(60, 32'700));
    hear(1s);
    play(Line::compactDisc, std::make_shared<ToneSource>(1000, 4000)); // contains no bass
    hear(3s);
    EXPECT_NEAR(amplitudeAt(fakes::leftOf(hear(1s)), 1000, frameRate), 4000, 40);
}

TEST_F(CardMixerTest, AReducedVolumeLeavesHeadroomForABoost) {
    EXPECT_EQ(set(4, mixer_control::bass, 65535), MixerResult::noError);
    EXPECT_EQ(set(4, mixer_control::volume, 65535 / 5), MixerResult::noError);
    play(Line::compactDisc, std::make_shared<ToneSource>(40, 32'700));
    hear(1s);
    EXPECT_NEAR(decibels(amplitudeAt(fakes::leftOf(hear(1s)), 40, frameRate) / 6540),
                shelfDb(40, 200, 12, 1), 0.2);
}

TEST_F(CardMixerTest, ABoostDoesNotChangeSilence) {
    EXPECT_EQ(set(4, mixer_control::bass, 65535), MixerResult::noError);
    EXPECT_EQ(set(4, mixer_control::treble, 65535), MixerResult::noError);
    play(Line::compactDisc, std::make_shared<PatternSource>(1000));
    play(Line::waveOut, std::make_shared<fakes::ConstantSource>(StereoFrame{}));
    hear(1s);
    EXPECT_THAT(hear(100ms), IsSound(silence(4410)));
}

TEST_F(CardMixerTest, ASoundAfterAnIdleTimeStartsWithTheCurrentTrebleSetting) {
    EXPECT_EQ(set(4, mixer_control::treble, 65535), MixerResult::noError);
    play(Line::compactDisc, std::make_shared<PatternSource>(44'100));
    hear(2s);
    EXPECT_FALSE(card.active());
    EXPECT_EQ(set(4, mixer_control::treble, 32768), MixerResult::noError);
    play(Line::compactDisc, std::make_shared<PatternSource>());
    EXPECT_THAT(hear(100ms), IsSound(pattern(0, 4410)))
        << "the gain must not change gradually at the beginning: treble was already neutral";
}

} // namespace
} // namespace sonarith::sound
