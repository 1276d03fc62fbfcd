// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/sound_card.h"

#include <gmock/gmock.h>

#include <random>

#include "support/fake_sound.h"
#include "support/sound_matchers.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::ConstantSource;
using fakes::IsSound;
using fakes::MemorySink;
using fakes::pattern;
using fakes::PatternSource;
using fakes::silence;
using testing::Each;

using Frames = std::vector<StereoFrame>;

Frames operator+(Frames first, const Frames& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

class SoundCardTest : public testing::Test {
  protected:
    SoundCard card;
    std::shared_ptr<MemorySink> recorder = std::make_shared<MemorySink>();
    std::shared_ptr<MemorySink> speakers = std::make_shared<MemorySink>();
    std::shared_ptr<PatternSource> disc = std::make_shared<PatternSource>();
};

TEST_F(SoundCardTest, IsActiveWhileItHasASourceOrARecording) {
    EXPECT_FALSE(card.active());
    card.attach(Line::waveOut, disc, 0ns);
    EXPECT_TRUE(card.active());
    card.detach(Line::waveOut);
    EXPECT_FALSE(card.active());
    card.startRecording(recorder, 0ns);
    EXPECT_TRUE(card.active());
    card.stopRecording(0ns);
    EXPECT_FALSE(card.active());
}

TEST_F(SoundCardTest, HasOnlySilenceToDeliverIfThereIsOnlyAListener) {
    EXPECT_EQ(card.work(), SoundCard::Work::none);
    card.setListener(std::make_shared<MemorySink>(), 0ns);
    EXPECT_TRUE(card.active());
    EXPECT_EQ(card.work(), SoundCard::Work::silence);
    card.attach(Line::compactDisc, disc, 0ns);
    EXPECT_EQ(card.work(), SoundCard::Work::playing);
    card.detach(Line::compactDisc);
    EXPECT_EQ(card.work(), SoundCard::Work::silence);
    card.startRecording(recorder, 0ns);
    EXPECT_EQ(card.work(), SoundCard::Work::all);
    card.stopRecording(0ns);
    EXPECT_EQ(card.work(), SoundCard::Work::silence);
}

TEST_F(SoundCardTest, RecordsSilenceOnlyForTheTimeBetweenStartOfRecordingAndAttach) {
    card.startRecording(recorder, 5s);
    card.attach(Line::compactDisc, disc, 5s + 20ms);
    card.stopRecording(5s + 50ms);
    EXPECT_THAT(recorder->frames(), IsSound(silence(882) + pattern(0, 1323)));
}

TEST_F(SoundCardTest, RecordsATrackBitForBitHoweverIrregularlyTheCardIsCalled) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        SoundCard jittery;
        const auto tape = std::make_shared<MemorySink>();
        std::mt19937 random(seed);
        std::uniform_int_distribution<std::int64_t> step(0, 300'000'000);
        SoundCard::Time now{step(random)};
        jittery.startRecording(tape, now);
        jittery.attach(Line::compactDisc, std::make_shared<PatternSource>(50'000), now);
        const SoundCard::Time start = now;
        while (now < start + 1200ms) {
            now += SoundCard::Time{step(random)};
            jittery.advance(now);
        }
        jittery.stopRecording(start + 10s);
        ASSERT_THAT(tape->frames(), IsSound(pattern(0, 50'000) + silence(391'000)))
            << "seed " << seed;
    }
}

TEST_F(SoundCardTest, CatchesUpInALateCall) {
    card.attach(Line::compactDisc, disc, 0ns);
    card.advance(10ms);
    card.advance(3s);
    EXPECT_EQ(disc->position(), 3 * frameRate);
}

TEST_F(SoundCardTest, ProducesNothingTwiceIfTimeSeemsToRunBackwards) {
    card.attach(Line::compactDisc, disc, 0ns);
    card.advance(1s);
    card.advance(500ms);
    EXPECT_EQ(disc->position(), frameRate);
    card.advance(1s + 10ms);
    EXPECT_EQ(disc->position(), frameRate + 441);
}

TEST_F(SoundCardTest, DoesNotDriftOverMinutesOfUnevenSteps) {
    const SoundCard::Time start{123'456'789'012'345};
    card.attach(Line::compactDisc, disc, start);
    for (int second = 1; second <= 180; ++second) {
        const SoundCard::Time end = start + std::chrono::seconds(second);
        for (SoundCard::Time now = end - 1s; now < end; now += 7'777'777ns) {
            card.advance(now);
        }
        card.advance(end);
        ASSERT_EQ(disc->position(), std::int64_t{second} * frameRate);
    }
}

TEST_F(SoundCardTest, ReleasesAnEndedSourceAndIsIdle) {
    auto source = std::make_shared<PatternSource>(1000);
    const std::weak_ptr<PatternSource> watch = source;
    card.attach(Line::compactDisc, std::move(source), 0ns);
    card.advance(20ms);
    EXPECT_FALSE(watch.expired());
    card.advance(30ms);
    EXPECT_TRUE(watch.expired());
    EXPECT_FALSE(card.active());
}

TEST_F(SoundCardTest, RecordsSilenceAfterASourceHasEnded) {
    card.startRecording(recorder, 0ns);
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(1000), 0ns);
    card.stopRecording(100ms);
    EXPECT_THAT(recorder->frames(), IsSound(pattern(0, 1000) + silence(3410)));
}

TEST_F(SoundCardTest, DoesNotCatchUpIdleTime) {
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(441), 0ns);
    card.advance(20ms);
    ASSERT_FALSE(card.active());
    card.attach(Line::compactDisc, disc, 60s);
    card.advance(60s + 10ms);
    EXPECT_EQ(disc->position(), 441);
}

TEST_F(SoundCardTest, DoesNotPullFromADetachedOrReplacedSource) {
    const auto second = std::make_shared<PatternSource>();
    card.attach(Line::compactDisc, disc, 0ns);
    card.attach(Line::compactDisc, second, 10ms);
    const int pulls = disc->pulls();
    EXPECT_EQ(disc->position(), 441);
    card.advance(20ms);
    EXPECT_EQ(disc->pulls(), pulls);
    EXPECT_EQ(second->position(), 441);
    card.detach(Line::compactDisc);
    card.advance(1s);
    EXPECT_EQ(second->position(), 441);
}

TEST_F(SoundCardTest, DetachesASourceOnlyFromTheLineToWhichItIsAttached) {
    const auto other = std::make_shared<PatternSource>();
    card.attach(Line::waveOut, other, 0ns);
    EXPECT_FALSE(card.detachSource(Line::waveOut, *disc));
    EXPECT_FALSE(card.detachSource(Line::compactDisc, *other));
    card.advance(10ms);
    EXPECT_EQ(other->position(), 441);
    EXPECT_TRUE(card.detachSource(Line::waveOut, *other));
    EXPECT_FALSE(card.detachSource(Line::waveOut, *other));
    EXPECT_FALSE(card.active());
}

TEST_F(SoundCardTest, DetachSourceReturnsFalseForALostSourceAndLeavesItsLineLost) {
    const std::shared_ptr<SampleSource> brief = std::make_shared<PatternSource>(441, Supply::lost);
    card.startRecording(recorder, 0ns);
    card.attach(Line::compactDisc, brief, 0ns);
    card.advance(20ms);
    EXPECT_FALSE(card.detachSource(Line::compactDisc, *brief));
    card.advance(30ms);
    EXPECT_EQ(recorder->size(), 441U) << "the line must still count as lost";
}

/// A source whose destructor calls the card. That call would never return if the card held its lock
/// while it releases the source.
class AskingSource : public PatternSource {
  public:
    AskingSource(SoundCard& card, int& destroyed)
        : PatternSource(441), card_(card), destroyed_(destroyed) {}
    ~AskingSource() override {
        static_cast<void>(card_.active());
        ++destroyed_;
    }

  private:
    SoundCard& card_;
    int& destroyed_;
};

TEST_F(SoundCardTest, ReleasesSourcesOutsideItsLock) {
    int destroyed = 0;
    card.attach(Line::compactDisc, std::make_shared<AskingSource>(card, destroyed), 0ns);
    card.attach(Line::compactDisc, std::make_shared<AskingSource>(card, destroyed), 0ns);
    EXPECT_EQ(destroyed, 1);
    card.detach(Line::compactDisc);
    EXPECT_EQ(destroyed, 2);
    card.attach(Line::compactDisc, std::make_shared<AskingSource>(card, destroyed), 0ns);
    card.advance(20ms);
    EXPECT_EQ(destroyed, 3);
}

TEST_F(SoundCardTest, RecordsAMutedDiscWithoutPlayingIt) {
    card.setSpeakers(speakers);
    card.setMuted(Line::compactDisc, true);
    card.setVolume(Line::compactDisc, 1000);
    card.startRecording(recorder, 0ns);
    card.attach(Line::compactDisc, disc, 0ns);
    card.stopRecording(100ms);
    EXPECT_THAT(recorder->frames(), IsSound(pattern(0, 4410)));
    EXPECT_THAT(speakers->frames(), IsSound(silence(4410)));
}

TEST_F(SoundCardTest, PlaysOneLineAtFullVolumeBitForBit) {
    card.setSpeakers(speakers);
    card.attach(Line::compactDisc, disc, 0ns);
    card.advance(100ms);
    EXPECT_THAT(speakers->frames(), IsSound(pattern(0, 4410)));
}

TEST_F(SoundCardTest, AppliesTheVolumesOfLineAndMasterOnlyToTheOutput) {
    card.setSpeakers(speakers);
    card.setVolume(Line::waveOut, fullVolume / 3);
    card.setMasterVolume(fullVolume / 5);
    card.attach(Line::waveOut, std::make_shared<ConstantSource>(StereoFrame{15000, -3000}), 0ns);
    card.setRecordingSource(RecordingSource::waveOut);
    card.startRecording(recorder, 0ns);
    card.stopRecording(10ms);
    EXPECT_THAT(speakers->frames(), Each(StereoFrame{1000, -200}));
    EXPECT_THAT(recorder->frames(), Each(StereoFrame{15000, -3000}));
    EXPECT_EQ(speakers->size(), 441U);
}

TEST_F(SoundCardTest, PlaysSilenceWhileTheMasterIsMutedAndKeepsTheMasterVolume) {
    card.setSpeakers(speakers);
    card.setMasterVolume(30000);
    card.setMasterMuted(true);
    card.attach(Line::waveOut, disc, 0ns);
    card.advance(10ms);
    EXPECT_THAT(speakers->frames(), IsSound(silence(441)));
    EXPECT_EQ(card.masterVolume(), 30000);
    EXPECT_TRUE(card.masterMuted());
    EXPECT_FALSE(card.muted(Line::waveOut));
}

TEST_F(SoundCardTest, ClampsVolumes) {
    card.setVolume(Line::externalInput, 70000);
    EXPECT_EQ(card.volume(Line::externalInput), fullVolume);
    card.setVolume(Line::externalInput, -1);
    EXPECT_EQ(card.volume(Line::externalInput), 0);
    card.setMasterVolume(1 << 30);
    EXPECT_EQ(card.masterVolume(), fullVolume);
}

TEST_F(SoundCardTest, ClipsAMixThatIsTooLoud) {
    card.setSpeakers(speakers);
    for (const Line line : {Line::compactDisc, Line::waveOut, Line::externalInput}) {
        card.attach(line, std::make_shared<ConstantSource>(StereoFrame{20000, -20000}), 0ns);
    }
    card.setRecordingSource(RecordingSource::mix);
    card.startRecording(recorder, 0ns);
    card.stopRecording(10ms);
    EXPECT_THAT(speakers->frames(), Each(StereoFrame{INT16_MAX, INT16_MIN}));
    EXPECT_THAT(recorder->frames(), Each(StereoFrame{INT16_MAX, INT16_MIN}));
    EXPECT_EQ(recorder->size(), 441U);
}

TEST_F(SoundCardTest, RecordsTheMixOfAllLinesUnaffectedByTheirVolumesAndMutes) {
    card.attach(Line::waveOut, std::make_shared<ConstantSource>(StereoFrame{7, -9}), 0ns);
    card.attach(Line::externalInput, std::make_shared<ConstantSource>(StereoFrame{100, 5}), 0ns);
    card.setVolume(Line::waveOut, 0);
    card.setMuted(Line::externalInput, true);
    card.setRecordingSource(RecordingSource::mix);
    card.startRecording(recorder, 0ns);
    card.stopRecording(10ms);
    EXPECT_THAT(recorder->frames(), Each(StereoFrame{107, -4}));
    EXPECT_EQ(recorder->size(), 441U);
}

TEST_F(SoundCardTest, RecordsOnlyTheChosenLine) {
    card.attach(Line::compactDisc, disc, 0ns);
    card.attach(Line::externalInput, std::make_shared<ConstantSource>(StereoFrame{1, 2}), 0ns);
    card.startRecording(recorder, 0ns);
    card.advance(10ms);
    card.setRecordingSource(RecordingSource::externalInput);
    card.advance(20ms);
    card.setRecordingSource(RecordingSource::waveOut);
    card.stopRecording(30ms);
    EXPECT_THAT(recorder->frames(),
                IsSound(pattern(0, 441) + Frames(441, StereoFrame{1, 2}) + silence(441)));
}

TEST_F(SoundCardTest, RecordsOnlyTheFramesBetweenStartAndStop) {
    card.attach(Line::compactDisc, disc, 0ns);
    card.startRecording(recorder, 10ms);
    card.stopRecording(30ms);
    card.advance(1s);
    EXPECT_THAT(recorder->frames(), IsSound(pattern(441, 882)));
}

TEST_F(SoundCardTest, SwitchesToTheNextRecordingWithoutAGap) {
    const auto next = std::make_shared<MemorySink>();
    card.attach(Line::compactDisc, disc, 0ns);
    card.startRecording(recorder, 0ns);
    card.startRecording(next, 20ms);
    card.stopRecording(30ms);
    EXPECT_THAT(recorder->frames(), IsSound(pattern(0, 882)));
    EXPECT_THAT(next->frames(), IsSound(pattern(882, 441)));
}

TEST_F(SoundCardTest, RecordsTheExpectedFramesWhenCallsAreMadeInRandomOrder) {
    constexpr std::size_t slice = 441; // 10 ms
    for (unsigned seed = 0; seed < 500; ++seed) {
        std::mt19937 random(seed);
        SoundCard ordered;
        const auto tape = std::make_shared<MemorySink>();
        const auto source = std::make_shared<PatternSource>();
        bool attached = false;
        bool recording = false;
        std::int64_t position = 0;
        Frames expected;
        SoundCard::Time now{1h};
        for (int step = 0; step < 20; ++step) {
            for (auto slices = random() % 3; slices > 0; --slices) {
                now += 10ms;
                if (recording) {
                    expected = expected + (attached ? pattern(position, slice) : silence(slice));
                }
                position += attached ? slice : 0;
            }
            switch (random() % 5) {
            case 0:
                ordered.attach(Line::compactDisc, source, now);
                attached = true;
                break;
            case 1:
                ordered.advance(now);
                ordered.detach(Line::compactDisc);
                attached = false;
                break;
            case 2:
                ordered.startRecording(tape, now);
                recording = true;
                break;
            case 3:
                ordered.stopRecording(now);
                recording = false;
                break;
            default:
                ordered.advance(now);
            }
        }
        ordered.advance(now);
        ASSERT_THAT(tape->frames(), IsSound(expected)) << "seed " << seed;
        ASSERT_EQ(source->position(), position) << "seed " << seed;
        ASSERT_EQ(ordered.active(), attached || recording);
    }
}

TEST_F(SoundCardTest, CallsTheWakeUpHookForEachNewSourceOrRecording) {
    int calls = 0;
    card.setWakeUp([&calls] { ++calls; });
    card.attach(Line::compactDisc, disc, 0ns);
    EXPECT_EQ(calls, 1);
    card.startRecording(recorder, 0ns);
    EXPECT_EQ(calls, 2);
    card.setWakeUp(nullptr);
    card.attach(Line::compactDisc, disc, 0ns);
    EXPECT_EQ(calls, 2);
}

} // namespace
} // namespace sonarith::sound
