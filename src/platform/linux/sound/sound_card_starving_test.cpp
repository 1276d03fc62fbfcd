// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the sound card while a source has no frames at present, after a source was lost, and while
// the recording accepts no frames.
#include "platform/linux/sound/sound_card.h"

#include <gmock/gmock.h>

#include <random>

#include "support/fake_sound.h"
#include "support/sound_matchers.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::IsSound;
using fakes::MemorySink;
using fakes::pattern;
using fakes::PatternSource;

using Frames = std::vector<StereoFrame>;

/// The frames of a recording without the silence at the recording's beginning and end.
Frames soundOf(const Frames& frames) {
    const auto audible = [](const StereoFrame& frame) {
        return frame != StereoFrame{};
    };
    const auto first = std::find_if(frames.begin(), frames.end(), audible);
    const auto last = std::find_if(frames.rbegin(), frames.rend(), audible).base();
    return first < last ? Frames(first, last) : Frames{};
}

class StarvingSoundCardTest : public testing::Test {
  protected:
    SoundCard card;
    std::shared_ptr<MemorySink> recorder = std::make_shared<MemorySink>();
    std::shared_ptr<PatternSource> disc = std::make_shared<PatternSource>();
};

TEST_F(StarvingSoundCardTest, RecordsNothingUntilTheLostSourceOfARecordedLineIsReplaced) {
    for (const RecordingSource source : {RecordingSource::compactDisc, RecordingSource::mix}) {
        SoundCard losing;
        const auto tape = std::make_shared<MemorySink>();
        losing.setRecordingSource(source);
        losing.attach(Line::compactDisc, std::make_shared<PatternSource>(1000, Supply::lost), 0s);
        losing.startRecording(tape, 0s);
        losing.advance(1min);
        EXPECT_THAT(tape->frames(), IsSound(pattern(0, 1000)));
        EXPECT_TRUE(losing.active());
        // The card records again when the line gets its next source.
        losing.attach(Line::compactDisc, std::make_shared<PatternSource>(441), 1min);
        losing.advance(1min + 10ms);
        Frames both = pattern(0, 1000);
        const Frames next = pattern(0, 441);
        both.insert(both.end(), next.begin(), next.end());
        EXPECT_THAT(tape->frames(), IsSound(both));
        losing.stopRecording(1min + 10ms);
    }
}

TEST_F(StarvingSoundCardTest, RecordsSilenceAfterTheLineOfALostSourceWasDetached) {
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(441, Supply::lost), 0s);
    card.startRecording(recorder, 0s);
    card.advance(1s);
    ASSERT_EQ(recorder->size(), 441U);
    card.detach(Line::compactDisc);
    card.advance(2s);
    EXPECT_EQ(recorder->size(), 441U + 44100U);
}

TEST_F(StarvingSoundCardTest, RecordsTheWaveLineAfterTheDiscsLineLostItsSource) {
    card.setRecordingSource(RecordingSource::waveOut);
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(441, Supply::lost), 0s);
    card.attach(Line::waveOut, disc, 0s);
    card.startRecording(recorder, 0s);
    card.advance(1s);
    EXPECT_THAT(recorder->frames(), IsSound(pattern(0, 44100)));
}

TEST_F(StarvingSoundCardTest, SkipsNoFrameAndInsertsNoneWhileItsSourceStarves) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        SoundCard starving;
        const auto tape = std::make_shared<MemorySink>();
        const auto source = std::make_shared<PatternSource>(40'000);
        source->starveAtRandom(seed);
        std::mt19937 random(seed);
        std::uniform_int_distribution<std::int64_t> step(0, 50'000'000);
        SoundCard::Time now{};
        starving.startRecording(tape, now);
        starving.attach(Line::compactDisc, source, now);
        while (source->position() < 40'000) {
            now += SoundCard::Time{step(random)};
            starving.advance(now);
        }
        starving.stopRecording(now);
        ASSERT_THAT(soundOf(tape->frames()), IsSound(pattern(0, 40'000))) << "seed " << seed;
        ASSERT_NE(tape->frames().front(), StereoFrame{})
            << "silence must not be inserted at the beginning";
    }
}

TEST_F(StarvingSoundCardTest, DoesNotCatchUpOnTheTimeDuringWhichAStarvingSourceStoppedTheCard) {
    disc->allow(100);
    card.startRecording(recorder, 0ns);
    card.attach(Line::compactDisc, disc, 0ns);
    card.advance(10ms);
    EXPECT_EQ(recorder->size(), 100U);
    card.advance(5s);
    EXPECT_EQ(recorder->size(), 100U);
    disc->allow(PatternSource::endless);
    card.advance(5s + 10ms);
    EXPECT_THAT(recorder->frames(), IsSound(pattern(0, 541)));
}

TEST_F(StarvingSoundCardTest, KeepsTwoLinesSynchronousIfBothStarve) {
    // Both lines play the same sound, so the mix is that sound at twice the level if no line loses
    // a frame.
    for (unsigned seed = 0; seed < 20; ++seed) {
        SoundCard two;
        const auto tape = std::make_shared<MemorySink>();
        const auto first = std::make_shared<PatternSource>(10'000);
        const auto second = std::make_shared<PatternSource>(10'000);
        first->starveAtRandom(seed);
        second->starveAtRandom(seed + 1000);
        two.setRecordingSource(RecordingSource::mix);
        two.attach(Line::compactDisc, first, 0ns);
        two.attach(Line::waveOut, second, 0ns);
        two.startRecording(tape, 0ns);
        SoundCard::Time now{};
        while (tape->size() < 10'000) {
            two.advance(now += 10ms);
        }
        Frames doubled = pattern(0, 10'000);
        for (StereoFrame& frame : doubled) {
            frame = saturated(WideFrame{2 * frame.left, 2 * frame.right});
        }
        ASSERT_THAT(soundOf(tape->frames()), IsSound(doubled)) << "seed " << seed;
    }
}

TEST_F(StarvingSoundCardTest, RecordsPulledFramesOfALineEvenAfterTheLineWasDetached) {
    const auto file = std::make_shared<PatternSource>();
    card.setRecordingSource(RecordingSource::waveOut);
    card.startRecording(recorder, 0ns);
    disc->allow(100);
    card.attach(Line::compactDisc, disc, 0ns);
    card.attach(Line::waveOut, file, 0ns);
    card.advance(10ms);
    ASSERT_EQ(recorder->size(), 100U);
    ASSERT_EQ(file->position(), 441);
    card.detach(Line::waveOut);
    card.attach(Line::waveOut, std::make_shared<PatternSource>(), 10ms);
    disc->allow(PatternSource::endless);
    card.stopRecording(30ms);
    Frames expected = pattern(0, 441);
    for (const StereoFrame& frame : pattern(0, 541)) {
        expected.push_back(frame);
    }
    EXPECT_THAT(recorder->frames(), IsSound(expected));
}

/// The disc and a file are attached. The file delivers 100 frames and then starves for several
/// blocks, which stops the card.
class DiscWithAStarvingLineTest : public StarvingSoundCardTest {
  protected:
    void SetUp() override {
        file->allow(100);
        card.startRecording(recorder, 0ns);
        card.attach(Line::waveOut, file, 0ns);
        card.attach(Line::compactDisc, disc, 0ns);
        card.advance(50ms);
    }
    /// The frames that the disc counts as played; the recorder must have received exactly these.
    [[nodiscard]] Frames counted() const {
        return pattern(0, static_cast<std::size_t>(disc->position()));
    }
    std::shared_ptr<PatternSource> file = std::make_shared<PatternSource>();
};

TEST_F(DiscWithAStarvingLineTest, TheDiscsPositionCountsOnlyPlayedFrames) {
    EXPECT_EQ(disc->position(), 100);
    EXPECT_THAT(recorder->frames(), IsSound(counted()));
}

TEST_F(DiscWithAStarvingLineTest, AStoppedRecordingEndsAtTheDiscsPosition) {
    card.stopRecording(60ms);
    EXPECT_EQ(disc->position(), 100);
    EXPECT_THAT(recorder->frames(), IsSound(counted()));
}

TEST_F(DiscWithAStarvingLineTest, NoFrameIsLostWhenTheDiscIsDetachedAndAttachedAgain) {
    card.advance(60ms);
    card.detach(Line::compactDisc);
    EXPECT_THAT(recorder->frames(), IsSound(counted()));
    card.attach(Line::compactDisc, disc, 70ms);
    file->allow(PatternSource::endless);
    card.stopRecording(80ms);
    EXPECT_EQ(disc->position(), 541);
    EXPECT_THAT(recorder->frames(), IsSound(counted()));
}

TEST_F(StarvingSoundCardTest, RecordsExactlyTheDiscsFramesWhileAllLinesStarveAtRandom) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        SoundCard starving;
        const auto tape = std::make_shared<MemorySink>();
        const auto source = std::make_shared<PatternSource>();
        const auto tune = std::make_shared<PatternSource>();
        const auto input = std::make_shared<PatternSource>();
        source->starveAtRandom(seed);
        tune->starveAtRandom(seed + 1000);
        input->starveAtRandom(seed + 2000);
        std::mt19937 random(seed);
        SoundCard::Time now{};
        starving.attach(Line::waveOut, tune, now);
        starving.attach(Line::externalInput, input, now);
        for (int part = 0; part < 20; ++part) {
            starving.startRecording(tape, now);
            starving.attach(Line::compactDisc, source, now);
            for (auto blocks = random() % 10; blocks > 0; --blocks) {
                starving.advance(now += 10ms);
            }
            // As at the end of a track or at a pause, the recording stops and the disc is detached,
            // in either order.
            if (random() % 2 == 0) {
                starving.stopRecording(now);
                starving.detach(Line::compactDisc);
            } else {
                starving.detach(Line::compactDisc);
                starving.stopRecording(now);
            }
            ASSERT_EQ(static_cast<std::int64_t>(tape->size()), source->position())
                << "seed " << seed;
        }
        ASSERT_THAT(tape->frames(), IsSound(pattern(0, tape->size()))) << "seed " << seed;
    }
}

/// Accepts only as many frames as the test allows.
class NarrowSink : public MemorySink {
  public:
    std::size_t space = 0;

    void record(std::span<const StereoFrame> frames) override {
        ASSERT_LE(frames.size(), space);
        space -= frames.size();
        MemorySink::record(frames);
    }
    [[nodiscard]] std::size_t room() const override { return space; }
};

class FullRecordingTest : public StarvingSoundCardTest {
  protected:
    std::shared_ptr<NarrowSink> narrow = std::make_shared<NarrowSink>();
};

TEST_F(FullRecordingTest, StopsTheCardSoThatNoFrameIsSkippedOrInserted) {
    const auto speakers = std::make_shared<MemorySink>();
    card.setSpeakers(speakers);
    card.startRecording(narrow, 0ns);
    card.attach(Line::compactDisc, disc, 0ns);
    narrow->space = 700;
    card.advance(20ms);
    EXPECT_EQ(narrow->size(), 700U);
    EXPECT_EQ(disc->position(), 700) << "the card must not play frames that are not recorded";
    card.advance(60s);
    EXPECT_EQ(narrow->size(), 700U);
    narrow->space = 100'000;
    card.advance(60s + 10ms);
    EXPECT_THAT(narrow->frames(), IsSound(pattern(0, 1141)))
        << "the card must not catch up on the minute during which it was stopped";
    EXPECT_THAT(speakers->frames(), IsSound(pattern(0, 1141)))
        << "the speakers must play exactly the recorded frames";
}

TEST_F(FullRecordingTest, DoesNotStopTheCardAfterTheRecordingHasEnded) {
    card.startRecording(narrow, 0ns);
    card.attach(Line::compactDisc, disc, 0ns);
    card.stopRecording(10ms);
    card.advance(20ms);
    EXPECT_EQ(disc->position(), 441);
    EXPECT_EQ(narrow->size(), 0U);
}

TEST_F(FullRecordingTest, RecordsExactlyTheDiscsFramesWhenSpaceBecomesFreeAtRandom) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        SoundCard held;
        const auto tape = std::make_shared<NarrowSink>();
        const auto source = std::make_shared<PatternSource>();
        source->starveAtRandom(seed);
        std::mt19937 random(seed);
        held.startRecording(tape, 0s);
        held.attach(Line::compactDisc, source, 0s);
        SoundCard::Time now{};
        for (int step = 0; step < 200; ++step) {
            tape->space = random() % 3 == 0 ? 0 : random() % 1000;
            held.advance(now += 10ms);
            ASSERT_EQ(static_cast<std::int64_t>(tape->size()), source->position())
                << "seed " << seed;
        }
        ASSERT_THAT(tape->frames(), IsSound(pattern(0, tape->size()))) << "seed " << seed;
    }
}

} // namespace
} // namespace sonarith::sound
