// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/sound_card_thread.h"

#include <algorithm>
#include <atomic>
#include <thread>

#include <gmock/gmock.h>

#include "support/fake_sound.h"
#include "support/limited_threads.h"
#include "support/waiting.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::eventually;
using fakes::MemorySink;
using fakes::PatternSource;

TEST(SoundCardThread, AdvancesACardThatBecomesActiveWhileTheThreadRuns) {
    SoundCard card;
    const SoundCardThread thread(card);
    const auto source = std::make_shared<PatternSource>();
    card.attach(Line::compactDisc, source, monotonicNow());
    EXPECT_TRUE(eventually([&] { return source->position() > 3 * 441; }));
}

TEST(SoundCardThread, AdvancesACardThatIsAlreadyActive) {
    SoundCard card;
    const auto source = std::make_shared<PatternSource>();
    card.attach(Line::compactDisc, source, monotonicNow());
    const SoundCardThread thread(card);
    EXPECT_TRUE(eventually([&] { return source->position() > 441; }));
}

TEST(SoundCardThread, SleepsWhileTheCardIsIdle) {
    SoundCard card;
    std::atomic<int> clockCalls = 0;
    const SoundCardThread thread(card, [&clockCalls] {
        ++clockCalls;
        return monotonicNow();
    });
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(1000), monotonicNow());
    ASSERT_TRUE(eventually([&] { return !card.active(); }));
    const int clockCallsBefore = clockCalls;
    std::this_thread::sleep_for(100ms); // twice the thread's longest interval
    EXPECT_EQ(clockCalls, clockCallsBefore);
    const auto source = std::make_shared<PatternSource>();
    card.attach(Line::compactDisc, source, monotonicNow());
    EXPECT_TRUE(eventually([&] { return source->position() > 0; }));
}

TEST(SoundCardThread, AdvancesACardWithOnlyAListenerAtMostOncePer50Milliseconds) {
    SoundCard card;
    std::atomic<int> clockCalls = 0;
    const SoundCardThread thread(card, [&clockCalls] {
        ++clockCalls;
        return monotonicNow();
    });
    const auto listener = std::make_shared<MemorySink>();
    card.setListener(listener, monotonicNow());
    ASSERT_TRUE(
        eventually([&] { return clockCalls >= 3; })); // the wake-up by setListener() is over
    const auto start = monotonicNow();
    const int clockCallsBefore = clockCalls;
    ASSERT_TRUE(eventually([&] { return clockCalls >= clockCallsBefore + 5; }));
    // Between the five calls are four intervals of at least 50 ms each: a thread can wake up late
    // but never early. The test requires 10 % less, for inexact clocks.
    EXPECT_GE(monotonicNow() - start, 4 * 45ms);
    const auto source = std::make_shared<PatternSource>();
    card.attach(Line::compactDisc, source, monotonicNow());
    EXPECT_TRUE(eventually([&] { return source->position() > 3 * 441; }));
    card.setListener(nullptr, monotonicNow());
}

bool isAudible(const std::vector<StereoFrame>& frames) {
    return std::ranges::any_of(frames, [](StereoFrame frame) { return frame != StereoFrame{}; });
}

/// Whether the frames that are not silent are consecutive frames of a PatternSource.
bool isOneRun(const std::vector<StereoFrame>& frames) {
    std::int64_t next = -1;
    for (const StereoFrame& frame : frames) {
        if (frame == StereoFrame{}) {
            continue;
        }
        if (next < 0) {
            // The left sample determines the frame's index in the pattern, because no left sample
            // repeats in these frames.
            next = frame.left - 1;
        }
        if (frame != fakes::patternFrame(next)) {
            return false;
        }
        ++next;
    }
    return true;
}

/// Plays only `line` for at least half a second. Tests that, on average, the thread advances the
/// card at most once per `interval`.
void expectWakeUps(Line line, std::chrono::milliseconds interval) {
    SoundCard card;
    const auto sound = std::make_shared<PatternSource>();
    const auto begin = monotonicNow();
    std::atomic<int> advances = 0;
    card.attach(line, sound, begin);
    {
        const SoundCardThread thread(card, [&] {
            ++advances;
            return monotonicNow();
        });
        EXPECT_TRUE(eventually([&] { return sound->position() >= frameRate / 2; }));
    }
    EXPECT_LE(advances, (monotonicNow() - begin) / interval + 1);
}

TEST(SoundCardThread, WakesUpAtMostOncePer30MillisecondsWhileOnlyAFileIsPlayed) {
    expectWakeUps(Line::waveOut, 30ms);
}

TEST(SoundCardThread, WakesUpAtMostOncePer20MillisecondsWhileADiscIsPlayed) {
    expectWakeUps(Line::compactDisc, 20ms);
}

TEST(SoundCardThread, TheWorkOfTheCardDependsOnItsLinesItsListenerAndItsRecorder) {
    SoundCard card;
    EXPECT_EQ(card.work(), SoundCard::Work::none);
    card.attach(Line::waveOut, std::make_shared<PatternSource>(), {});
    EXPECT_EQ(card.work(), SoundCard::Work::files);
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(), {});
    EXPECT_EQ(card.work(), SoundCard::Work::playing);
    card.detach(Line::compactDisc);
    EXPECT_EQ(card.work(), SoundCard::Work::files);
    card.startRecording(std::make_shared<MemorySink>(), {});
    EXPECT_EQ(card.work(), SoundCard::Work::all);
    card.stopRecording({});
    card.setListener(std::make_shared<MemorySink>(), {});
    EXPECT_EQ(card.work(), SoundCard::Work::playing);
    card.startRecording(std::make_shared<MemorySink>(), {});
    EXPECT_EQ(card.work(), SoundCard::Work::all);
}

TEST(SoundCardThread, NoRecordingOmitsOrRepeatsASampleWhileSeveralThreadsUseTheCard) {
    SoundCard card;
    // Each call of the clock advances the time by 3 us, so that the threads pass different times to
    // the card.
    std::atomic<std::int64_t> microseconds = 0;
    const auto now = [&microseconds] {
        return SoundCard::Time{microseconds.fetch_add(3) * 1000};
    };
    const SoundCardThread thread(card, now);
    const auto source = std::make_shared<PatternSource>();
    std::atomic<bool> done = false;
    std::vector<std::shared_ptr<MemorySink>> tapes;

    std::thread recording([&] {
        // On a busy machine, the thread that attaches the source may run late.
        bool audible = false;
        for (int i = 0; i < 300 || (!audible && i < 30'000); ++i) {
            tapes.push_back(std::make_shared<MemorySink>());
            card.startRecording(tapes.back(), now());
            for (int j = 0; j < 20; ++j) {
                card.advance(now());
            }
            card.stopRecording(now());
            audible = audible || isAudible(tapes.back()->frames());
        }
        done = true;
    });
    std::thread attaching([&] {
        while (!done) {
            card.attach(Line::compactDisc, source, now());
            card.advance(now());
            card.detach(Line::compactDisc);
        }
    });
    std::thread mixing([&] {
        int level = 0;
        while (!done) {
            card.setVolume(Line::compactDisc, ++level % fullVolume);
            card.setMuted(Line::compactDisc, level % 2 == 0);
            card.setSpeakers(level % 3 == 0 ? std::make_shared<MemorySink>() : nullptr);
            static_cast<void>(card.active());
        }
    });
    recording.join();
    attaching.join();
    mixing.join();

    ASSERT_LT(source->position(), 32719) << "isOneRun() requires that no sample repeats";
    for (const auto& tape : tapes) {
        ASSERT_TRUE(isOneRun(tape->frames()));
    }
    EXPECT_TRUE(
        std::ranges::any_of(tapes, [](const auto& tape) { return isAudible(tape->frames()); }));
}

TEST(SoundCardThread, IsStartedByALaterSoundIfNoThreadCouldBeStartedBefore) {
    fakes::LimitedThreads threads(0);
    SoundCard card;
    const SoundCardThread thread(card, monotonicNow, threads.starter());
    const auto first = std::make_shared<PatternSource>();
    card.attach(Line::compactDisc, first, monotonicNow());
    EXPECT_EQ(threads.refused(), 2);
    card.advance(monotonicNow() + 1s);
    EXPECT_GT(first->position(), 0) << "advance() must work without a thread";
    threads.free(1);
    const auto second = std::make_shared<PatternSource>();
    card.attach(Line::compactDisc, second, monotonicNow());
    EXPECT_TRUE(eventually([&] { return second->position() > 3 * 441; }));
    card.attach(Line::waveOut, std::make_shared<PatternSource>(), monotonicNow());
    EXPECT_EQ(threads.refused(), 2) << "no second thread may be requested while one runs";
}

} // namespace
} // namespace sonarith::sound
