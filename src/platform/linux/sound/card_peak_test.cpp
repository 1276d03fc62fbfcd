// SPDX-License-Identifier: GPL-3.0-or-later
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "platform/linux/sound/peak_meter.h"
#include "platform/linux/sound/sound_card.h"
#include "support/counted_allocations.h"
#include "support/fake_sound.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::ConstantSource;
using fakes::PatternSource;
using Frames = std::vector<StereoFrame>;

/// A source that delivers the given frames and then ends.
class ListSource : public SampleSource {
  public:
    explicit ListSource(Frames frames) : frames_(std::move(frames)) {}
    [[nodiscard]] Pulled pull(std::span<StereoFrame> block) override {
        const std::size_t count = std::min(block.size(), frames_.size() - next_);
        std::copy_n(frames_.begin() + static_cast<std::ptrdiff_t>(next_), count, block.begin());
        next_ += count;
        return {count, next_ == frames_.size() ? Supply::ended : Supply::flowing};
    }

  private:
    Frames frames_;
    std::size_t next_ = 0;
};

TEST(PeakOf, IsTheLargestAbsoluteSampleOfBothChannels) {
    EXPECT_EQ(peakOf({}), 0);
    EXPECT_EQ(peakOf(Frames{{0, 0}, {3, -5}, {4, 1}}), 5);
    EXPECT_EQ(peakOf(Frames{{-7, 2}}), 7);
    EXPECT_EQ(peakOf(Frames{{2, 9}}), 9);
    EXPECT_EQ(peakOf(Frames{{32767, 0}}), 32767);
    EXPECT_EQ(peakOf(Frames{{0, -32768}}), 32768);
}

TEST(CardPeak, IsTheLargestSampleSinceTheLastReading) {
    // An irregular signal whose level rises and falls; sometimes the left channel is louder,
    // sometimes the right channel.
    Frames signal;
    for (int i = 0; i < frameRate; ++i) {
        const double swell = std::abs(std::sin(i / 7001.0));
        signal.push_back({static_cast<std::int16_t>(32'000 * swell * std::sin(i / 9.7)),
                          static_cast<std::int16_t>(31'000 * swell * std::sin(i / 83.0))});
    }
    SoundCard card;
    card.attach(Line::compactDisc, std::make_shared<ListSource>(signal), 0ns);
    std::size_t from = 0;
    // The peak is read after 1, 2, 3, 1, ... blocks.
    SoundCard::Time now{};
    for (int reading = 0; reading < 40; ++reading) {
        const auto blocks = static_cast<std::size_t>(1 + reading % 3);
        for (std::size_t i = 0; i < blocks; ++i) {
            now += 10ms;
            card.advance(now);
        }
        const int expected = peakOf(std::span(signal).subspan(from, blocks * blockFrames));
        from += blocks * blockFrames;
        ASSERT_EQ(card.recorderPeak(now), expected) << "reading " << reading;
    }
}

TEST(CardPeak, IsUnchangedWithoutAFurtherBlockAndZeroAfter50Milliseconds) {
    SoundCard card;
    Frames sound(blockFrames, {5, -900});
    card.attach(Line::compactDisc, std::make_shared<ListSource>(sound), 0ns);
    EXPECT_EQ(card.recorderPeak(0ns), 0);
    card.advance(10ms);
    EXPECT_EQ(card.recorderPeak(10ms), 900);
    EXPECT_EQ(card.recorderPeak(20ms), 900);
    EXPECT_EQ(card.recorderPeak(59'999us), 900);
    EXPECT_EQ(card.recorderPeak(60ms), 0);
    EXPECT_EQ(card.recorderPeak(10s), 0);
}

TEST(CardPeak, IsZeroAtAReadingLongAfterTheSound) {
    SoundCard card;
    card.attach(Line::compactDisc, std::make_shared<ListSource>(Frames(441, {900, 0})), 0ns);
    card.advance(10ms);
    EXPECT_EQ(card.recorderPeak(5s), 0);
    EXPECT_EQ(card.recorderPeak(5s), 0);
}

TEST(CardPeak, IsZeroWhileTheDiscStarves) {
    SoundCard card;
    const auto disc = std::make_shared<PatternSource>();
    disc->allow(441);
    card.attach(Line::compactDisc, disc, 0ns);
    card.advance(10ms);
    EXPECT_EQ(card.recorderPeak(10ms), 441);
    card.advance(100ms);
    EXPECT_EQ(card.recorderPeak(100ms), 0);
}

TEST(CardPeak, IsIndependentOfVolumesMutesAndTone) {
    SoundCard card;
    card.setVolume(Line::compactDisc, 100);
    card.setMuted(Line::compactDisc, true);
    card.setMasterMuted(true);
    card.setMasterVolume(0);
    card.tone().setBass(0);
    card.attach(Line::compactDisc, std::make_shared<ConstantSource>(StereoFrame{-32768, 3}), 0ns);
    card.advance(10ms);
    EXPECT_EQ(card.recorderPeak(10ms), 32768);
}

TEST(CardPeak, OfTheRecorderIsThePeakOfItsSelectedSourceAndEachLineHasItsOwnPeak) {
    SoundCard card;
    card.attach(Line::compactDisc, std::make_shared<ConstantSource>(StereoFrame{100, 0}), 0ns);
    card.attach(Line::waveOut, std::make_shared<ConstantSource>(StereoFrame{0, -200}), 0ns);
    card.advance(10ms);
    EXPECT_EQ(card.recorderPeak(10ms), 100);
    EXPECT_EQ(card.linePeak(Line::waveOut, 10ms), 200);
    EXPECT_EQ(card.linePeak(Line::externalInput, 10ms), 0);
    card.setRecordingSource(RecordingSource::waveOut);
    card.advance(20ms);
    EXPECT_EQ(card.recorderPeak(20ms), 200);
    card.attach(Line::externalInput, std::make_shared<ConstantSource>(StereoFrame{30, 0}), 20ms);
    card.setRecordingSource(RecordingSource::externalInput);
    card.advance(30ms);
    EXPECT_EQ(card.recorderPeak(30ms), 30);
    EXPECT_EQ(card.linePeak(Line::externalInput, 30ms), 30);
}

TEST(CardPeak, OfTheMixIsThePeakOfTheRecordedSum) {
    SoundCard card;
    card.setRecordingSource(RecordingSource::mix);
    card.attach(Line::compactDisc, std::make_shared<ConstantSource>(StereoFrame{100, 0}), 0ns);
    card.attach(Line::waveOut, std::make_shared<ConstantSource>(StereoFrame{-30, 20}), 0ns);
    card.advance(10ms);
    EXPECT_EQ(card.recorderPeak(10ms), 70);
    card.attach(Line::waveOut, std::make_shared<ConstantSource>(StereoFrame{32767, 0}), 10ms);
    card.advance(20ms);
    EXPECT_EQ(card.recorderPeak(20ms), 32767)
        << "the peak must be that of the recorded sum, which is clipped to 16 bits";
}

TEST(CardPeak, IsZeroForASilentSourceWhileAnotherLinePlays) {
    SoundCard card;
    card.attach(Line::waveOut, std::make_shared<ConstantSource>(StereoFrame{700, 0}), 0ns);
    card.advance(10ms);
    EXPECT_EQ(card.recorderPeak(10ms), 0)
        << "no disc plays, so the recorder's source must have no peak";
}

TEST(CardPeak, IsReadWithoutAllocations) {
    SoundCard card;
    card.attach(Line::compactDisc, std::make_shared<ConstantSource>(StereoFrame{700, 0}), 0ns);
    card.advance(10ms);
    int sum = 0;
    EXPECT_EQ(test::allocationsOf([&] {
                  for (int i = 0; i < 100; ++i) {
                      sum += card.recorderPeak(10ms) + card.linePeak(Line::waveOut, 10ms);
                  }
              }),
              0);
    EXPECT_EQ(sum, 70'000);
    EXPECT_GT(test::allocationsOf([] { static_cast<void>(std::make_shared<SoundCard>()); }), 0)
        << "allocationsOf() must count, otherwise this test proves nothing";
}

} // namespace
} // namespace sonarith::sound
