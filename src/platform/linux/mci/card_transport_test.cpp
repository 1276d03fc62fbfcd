// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/card_transport.h"

#include <gmock/gmock.h>

#include <thread>

#include "support/fake_disc.h"
#include "support/limited_threads.h"

namespace sonarith::mci {
namespace {

using namespace std::chrono_literals;
using disc::PlayerMode;
using fakes::FakeDisc;

constexpr std::int64_t frames = disc::framesPerSector;

/// Stores the sound that the card's recorder receives.
class RecordedSound : public sound::RecordingSink {
  public:
    void record(std::span<const sound::StereoFrame> block) override {
        sound.insert(sound.end(), block.begin(), block.end());
    }
    std::vector<sound::StereoFrame> sound;
};

/// A card, and a clock that only the test advances.
class Bench {
  public:
    /// Advances the time until the transport has reached `frame` or no longer plays. The time is
    /// advanced in steps, because the disc is read on a separate thread, and the card waits while
    /// no sound is ready.
    void playUntil(CardTransport& transport, std::int64_t frame) {
        while (transport.positionInFrames() < frame && transport.mode() == PlayerMode::playing) {
            time_ += 1ms;
            std::this_thread::yield();
        }
    }
    void advanceTime(sound::SoundCard::Time time) { time_ += time; }

    sound::SoundCard card;
    Clock now = [this] {
        return time_;
    };

  private:
    sound::SoundCard::Time time_ = 5s;
};

TEST(ATransport, PlaysTheDiscIntoTheCardsDiscLine) {
    Bench bench;
    auto recorded = std::make_shared<RecordedSound>();
    const auto disc = std::make_shared<FakeDisc>(fakes::audioTable({40, 60}));
    CardTransport transport(disc, bench.card, bench.now);
    EXPECT_FALSE(bench.card.active());
    bench.card.startRecording(recorded, bench.now());
    ASSERT_TRUE(transport.play(40, 100).ok());
    EXPECT_EQ(transport.mode(), PlayerMode::playing);
    EXPECT_EQ(transport.positionInFrames(), 40 * frames);
    bench.playUntil(transport, 100 * frames);
    EXPECT_EQ(transport.positionInFrames(), 100 * frames);
    EXPECT_EQ(transport.mode(), PlayerMode::stopped);
    ASSERT_GE(recorded->sound.size(), 60U * frames);
    for (std::int64_t i = 0; i < 60 * frames; ++i) {
        ASSERT_EQ(recorded->sound[static_cast<std::size_t>(i)], FakeDisc::frameAt(40 * frames + i));
    }
    EXPECT_EQ(disc->wrongReads(), 0);
}

TEST(ATransport, LeavesTheCardIdleWhenItDoesNotPlay) {
    Bench bench;
    CardTransport transport(std::make_shared<FakeDisc>(fakes::audioTable({1000})), bench.card,
                            bench.now);
    ASSERT_TRUE(transport.play(0, 1000).ok());
    EXPECT_TRUE(bench.card.active());
    transport.pause();
    EXPECT_FALSE(bench.card.active());
    transport.resume();
    EXPECT_TRUE(bench.card.active());
    transport.stop();
    EXPECT_FALSE(bench.card.active());
    ASSERT_TRUE(transport.play(3, 5).ok());
    transport.seek(7);
    EXPECT_FALSE(bench.card.active());
    EXPECT_EQ(transport.positionInFrames(), 7 * frames);
    ASSERT_TRUE(transport.play(10, 12).ok());
    bench.playUntil(transport, 12 * frames);
    EXPECT_FALSE(bench.card.active());
}

TEST(APausedTransport, LosesNoSampleAndRepeatsNone) {
    Bench bench;
    auto recorded = std::make_shared<RecordedSound>();
    CardTransport transport(std::make_shared<FakeDisc>(fakes::audioTable({1000})), bench.card,
                            bench.now);
    ASSERT_TRUE(transport.play(0, 1000).ok());
    bench.card.startRecording(recorded, bench.now());
    bench.playUntil(transport, 1234);
    transport.pause();
    bench.card.stopRecording(bench.now());
    const std::int64_t place = transport.positionInFrames();
    EXPECT_EQ(place, static_cast<std::int64_t>(recorded->sound.size()));
    bench.advanceTime(1h);
    EXPECT_EQ(transport.positionInFrames(), place);
    EXPECT_EQ(transport.mode(), PlayerMode::paused);
    transport.resume();
    bench.card.startRecording(recorded, bench.now());
    bench.playUntil(transport, place + 5000);
    transport.stop();
    bench.card.stopRecording(bench.now());
    EXPECT_GE(recorded->sound.size(), static_cast<std::size_t>(place) + 5000);
    for (std::size_t i = 0; i < recorded->sound.size(); ++i) {
        ASSERT_EQ(recorded->sound[i], FakeDisc::frameAt(static_cast<std::int64_t>(i)))
            << "frame " << i;
    }
}

TEST(ATransport, StopsAtTheExactMomentOfTheCall) {
    Bench bench;
    CardTransport transport(std::make_shared<FakeDisc>(fakes::audioTable({1000})), bench.card,
                            bench.now);
    ASSERT_TRUE(transport.play(0, 1000).ok());
    // After this call at least one whole sector is buffered. A sector lasts longer than 10 ms.
    bench.playUntil(transport, 1);
    const std::int64_t place = transport.positionInFrames();
    bench.advanceTime(10ms);
    transport.stop();
    EXPECT_EQ(transport.positionInFrames(), place + 441);
}

TEST(ATransport, KeepsItsPositionAfterItsDiscHasVanished) {
    Bench bench;
    const auto disc = std::make_shared<FakeDisc>(fakes::audioTable({100'000}));
    CardTransport transport(disc, bench.card, bench.now);
    ASSERT_TRUE(transport.play(0, 100'000).ok());
    bench.playUntil(transport, 1);
    disc->vanish();
    std::int64_t place = -1;
    while (!transport.gone() || place != transport.positionInFrames()) {
        place = transport.positionInFrames();
        bench.advanceTime(100ms);
        std::this_thread::yield();
    }
    bench.advanceTime(1h);
    EXPECT_EQ(transport.positionInFrames(), place);
    transport.stop();
    EXPECT_EQ(transport.positionInFrames(), place);
}

TEST(ADestroyedTransport, HasDetachedItsDiscFromTheCard) {
    Bench bench;
    {
        CardTransport transport(std::make_shared<FakeDisc>(fakes::audioTable({1000})), bench.card,
                                bench.now);
        ASSERT_TRUE(transport.play(0, 1000).ok());
        EXPECT_TRUE(bench.card.active());
    }
    EXPECT_FALSE(bench.card.active());
    bench.card.advance(bench.now() + 1s);
}

TEST(ATransport, LeavesTheCardIdleIfNoReadingThreadCanBeStarted) {
    Bench bench;
    const fakes::LimitedThreads threads(0);
    CardTransport transport(std::make_shared<FakeDisc>(fakes::audioTable({1000})), bench.card,
                            bench.now, threads.starter());
    EXPECT_FALSE(transport.play(0, 1000).ok());
    EXPECT_FALSE(bench.card.active());
    EXPECT_EQ(transport.mode(), PlayerMode::stopped);
}

} // namespace
} // namespace sonarith::mci
