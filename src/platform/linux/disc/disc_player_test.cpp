// SPDX-License-Identifier: GPL-3.0-or-later
// Tests how a player plays a disc. disc_player_close_test.cpp tests the destruction of a player.
#include "platform/linux/disc/disc_player.h"

#include <atomic>
#include <random>
#include <thread>

#include <gmock/gmock.h>

#include "platform/linux/disc/fake_disc.h"
#include "support/limited_threads.h"

namespace sonarith::disc {
namespace {

using sound::Pulled;
using sound::StereoFrame;
using sound::Supply;

// 10 ms at 44100 Hz. The 588 frames of a sector are no multiple of a block, so block and sector
// boundaries differ.
constexpr std::size_t blockFrames = 441;

std::shared_ptr<FakeDisc> discOf(std::vector<Track> tracks) {
    return std::make_shared<FakeDisc>(std::move(tracks));
}

std::shared_ptr<FakeDisc> longDisc() {
    return discOf({{TrackKind::audio, 10000}});
}

/// Pulls until `wanted` frames have arrived or the supply is `ended` or `lost`, without a time
/// limit.
std::vector<StereoFrame> play(DiscPlayer& player, std::size_t wanted) {
    std::vector<StereoFrame> played;
    std::vector<StereoFrame> block(blockFrames);
    while (played.size() < wanted) {
        const std::span<StereoFrame> room(block.data(),
                                          std::min(block.size(), wanted - played.size()));
        const Pulled pulled = player.pull(room);
        played.insert(played.end(), block.begin(),
                      block.begin() + static_cast<std::ptrdiff_t>(pulled.frames));
        if (pulled.supply == Supply::ended || pulled.supply == Supply::lost) {
            break;
        }
        if (pulled.supply == Supply::starving) {
            std::this_thread::yield();
        }
    }
    return played;
}

std::vector<StereoFrame> playToItsEnd(DiscPlayer& player) {
    return play(player, SIZE_MAX);
}

Pulled pullBlock(DiscPlayer& player) {
    std::vector<StereoFrame> block(blockFrames);
    return player.pull(block);
}

TEST(DiscPlayer, IsInitiallyStoppedAndReadsNothing) {
    const auto disc = longDisc();
    DiscPlayer player(disc);
    EXPECT_EQ(player.mode(), PlayerMode::stopped);
    EXPECT_EQ(player.positionInFrames(), 0);
    EXPECT_EQ(pullBlock(player).supply, Supply::ended);
    EXPECT_TRUE(disc->reads().empty());
}

TEST(DiscPlayer, DeliversEveryFrameOfTheRangeOnceAndInOrder) {
    DiscPlayer player(longDisc());
    ASSERT_TRUE(player.play(7, 1007).ok());
    EXPECT_EQ(playToItsEnd(player), framesAt(7 * framesPerSector, 1000 * framesPerSector));
    EXPECT_EQ(player.mode(), PlayerMode::stopped);
    EXPECT_EQ(player.positionInFrames(), 1007 * framesPerSector);
}

TEST(DiscPlayer, CountsThePositionInPulledFrames) {
    DiscPlayer player(longDisc());
    ASSERT_TRUE(player.play(100, 200).ok());
    EXPECT_EQ(player.positionInFrames(), 100 * framesPerSector);
    EXPECT_EQ(play(player, 1000).size(), 1000u);
    EXPECT_EQ(player.positionInFrames(), 100 * framesPerSector + 1000);
    EXPECT_EQ(player.mode(), PlayerMode::playing);
}

TEST(DiscPlayer, ReadsExactlyToTheEndOfARangeWhateverItsLength) {
    for (std::int64_t length = 1; length <= 60; ++length) {
        const auto disc = longDisc();
        DiscPlayer player(disc);
        ASSERT_TRUE(player.play(500, 500 + length).ok());
        EXPECT_EQ(playToItsEnd(player).size(), static_cast<std::size_t>(length * framesPerSector));
        EXPECT_EQ(disc->furthest(), 500 + length);
    }
}

TEST(DiscPlayer, NeverReadsFurtherAheadThanFourSeconds) {
    const auto disc = longDisc();
    DiscPlayer player(disc);
    ASSERT_TRUE(player.play(0, 10000).ok());
    // Waits until the reader has requested 4 s of sound, before the first frame is pulled.
    constexpr std::int64_t ahead = 4 * sectorsPerSecond;
    while (disc->furthest() < ahead) {
        std::this_thread::yield();
    }
    std::int64_t taken = 0;
    while (taken < 3000 * framesPerSector) {
        taken += static_cast<std::int64_t>(pullBlock(player).frames);
        const std::int64_t furthest = disc->furthest();
        ASSERT_LE(furthest * framesPerSector, player.positionInFrames() + ahead * framesPerSector);
    }
}

TEST(DiscPlayer, PlaysAcrossAudioTracksAndStopsWhereADataTrackBegins) {
    const auto disc = discOf({{TrackKind::audio, 30},
                              {TrackKind::audio, 40},
                              {TrackKind::data, 50},
                              {TrackKind::audio, 60}});
    DiscPlayer player(disc);
    ASSERT_TRUE(player.play(10, 180).ok());
    EXPECT_EQ(playToItsEnd(player), framesAt(10 * framesPerSector, 60 * framesPerSector));
    EXPECT_EQ(player.positionInFrames(), 70 * framesPerSector);
    EXPECT_EQ(disc->furthest(), 70);

    ASSERT_TRUE(player.play(120, 180).ok());
    EXPECT_EQ(playToItsEnd(player), framesAt(120 * framesPerSector, 60 * framesPerSector));
}

TEST(DiscPlayer, StopsAtOnceInADataTrackAndForAnEmptyRange) {
    const auto disc = discOf({{TrackKind::data, 50}, {TrackKind::audio, 60}});
    DiscPlayer player(disc);
    ASSERT_TRUE(player.play(20, 110).ok());
    EXPECT_EQ(player.mode(), PlayerMode::stopped);
    EXPECT_EQ(player.positionInFrames(), 20 * framesPerSector);
    ASSERT_TRUE(player.play(60, 60).ok());
    EXPECT_EQ(player.mode(), PlayerMode::stopped);
    EXPECT_EQ(player.positionInFrames(), 60 * framesPerSector);
    EXPECT_TRUE(disc->reads().empty());
}

TEST(DiscPlayer, StarvesDuringTheFirstRead) {
    const auto disc = longDisc();
    disc->hold();
    DiscPlayer player(disc);
    ASSERT_TRUE(player.play(0, 100).ok());
    disc->waitForReads(1);
    const Pulled pulled = pullBlock(player);
    EXPECT_EQ(pulled.frames, 0u);
    EXPECT_EQ(pulled.supply, Supply::starving);
    EXPECT_EQ(player.positionInFrames(), 0);
    disc->release();
    EXPECT_EQ(playToItsEnd(player), framesAt(0, 100 * framesPerSector));
}

TEST(DiscPlayer, ANewPlayDiscardsTheResultOfTheRunningRead) {
    const auto disc = longDisc();
    disc->hold();
    DiscPlayer player(disc);
    ASSERT_TRUE(player.play(0, 1000).ok());
    disc->waitForReads(1);
    ASSERT_TRUE(player.play(5000, 5100).ok());
    EXPECT_EQ(player.positionInFrames(), 5000 * framesPerSector);
    disc->release();
    EXPECT_EQ(playToItsEnd(player), framesAt(5000 * framesPerSector, 100 * framesPerSector));
}

TEST(DiscPlayer, ANewPlayDiscardsTheSoundThatWasReadAhead) {
    const auto disc = longDisc();
    DiscPlayer player(disc);
    ASSERT_TRUE(player.play(0, 1000).ok());
    EXPECT_EQ(play(player, 1000).size(), 1000u);
    ASSERT_TRUE(player.play(0, 1000).ok());
    EXPECT_EQ(play(player, 2000), framesAt(0, 2000));
    ASSERT_TRUE(player.play(77, 78).ok());
    EXPECT_EQ(playToItsEnd(player), framesAt(77 * framesPerSector, framesPerSector));
}

TEST(DiscPlayer, ContinuesAfterAPauseWithTheNextFrame) {
    const auto disc = longDisc();
    DiscPlayer player(disc);
    ASSERT_TRUE(player.play(0, 100).ok());
    EXPECT_EQ(play(player, 1000), framesAt(0, 1000));
    player.pause();
    EXPECT_EQ(player.mode(), PlayerMode::paused);
    const Pulled pulled = pullBlock(player);
    EXPECT_EQ(pulled.frames, 0u);
    EXPECT_EQ(pulled.supply, Supply::starving);
    EXPECT_EQ(player.positionInFrames(), 1000);
    player.resume();
    EXPECT_EQ(playToItsEnd(player), framesAt(1000, 100 * framesPerSector - 1000));
}

TEST(DiscPlayer, KeepsTheDataOfAReadThatWasRunningWhenAPauseBegan) {
    const auto disc = longDisc();
    disc->hold();
    DiscPlayer player(disc);
    ASSERT_TRUE(player.play(0, 20).ok());
    disc->waitForReads(1);
    player.pause();
    disc->release();
    player.resume();
    EXPECT_EQ(playToItsEnd(player), framesAt(0, 20 * framesPerSector));
    EXPECT_EQ(disc->reads().size(), 1u);
}

TEST(DiscPlayer, BeginsNoReadWhilePaused) {
    const auto disc = longDisc();
    disc->hold();
    DiscPlayer player(disc);
    ASSERT_TRUE(player.play(0, 1000).ok());
    disc->waitForReads(1);
    player.pause();
    disc->release();
    // Waits up to 20 ms, long enough to detect a reader that ignores the pause. A correct reader
    // always passes.
    for (int i = 0; i < 20 && disc->reads().size() == 1; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_EQ(disc->reads().size(), 1u);
}

TEST(DiscPlayer, AStopKeepsThePositionAndASeekSetsIt) {
    const auto disc = longDisc();
    DiscPlayer player(disc);
    ASSERT_TRUE(player.play(10, 1000).ok());
    EXPECT_EQ(play(player, 600).size(), 600u);
    player.stop();
    EXPECT_EQ(player.mode(), PlayerMode::stopped);
    EXPECT_EQ(player.positionInFrames(), 10 * framesPerSector + 600);
    EXPECT_EQ(pullBlock(player).supply, Supply::ended);

    ASSERT_TRUE(player.play(10, 1000).ok());
    player.seek(33);
    EXPECT_EQ(player.mode(), PlayerMode::stopped);
    EXPECT_EQ(player.positionInFrames(), 33 * framesPerSector);
    EXPECT_EQ(pullBlock(player).frames, 0u);
}

TEST(DiscPlayer, APauseOrAResumeHasNoEffectWhileStopped) {
    DiscPlayer player(longDisc());
    player.pause();
    EXPECT_EQ(player.mode(), PlayerMode::stopped);
    player.resume();
    EXPECT_EQ(player.mode(), PlayerMode::stopped);
    ASSERT_TRUE(player.play(0, 100).ok());
    player.pause();
    player.stop();
    player.resume();
    EXPECT_EQ(player.mode(), PlayerMode::stopped);
}

TEST(DiscPlayer, StaysInModePlayingWhenTheMediumIsGone) {
    const auto disc = longDisc();
    disc->vanishFrom(60);
    DiscPlayer player(disc);
    EXPECT_FALSE(player.gone());
    ASSERT_TRUE(player.play(0, 1000).ok());
    const std::vector<StereoFrame> played = playToItsEnd(player);
    EXPECT_TRUE(player.gone());
    EXPECT_EQ(player.mode(), PlayerMode::playing);
    // The reads before the failed one were complete, and all of them were played.
    EXPECT_EQ(played, framesAt(0, disc->reads().back().first * framesPerSector));
    EXPECT_EQ(player.positionInFrames(), static_cast<std::int64_t>(played.size()));

    const std::size_t reads = disc->reads().size();
    EXPECT_EQ(pullBlock(player).supply, Supply::lost);
    ASSERT_TRUE(player.play(0, 10).ok());
    EXPECT_EQ(player.mode(), PlayerMode::playing);
    EXPECT_EQ(pullBlock(player).supply, Supply::lost);
    EXPECT_EQ(disc->reads().size(), reads);
    player.stop();
    EXPECT_EQ(player.mode(), PlayerMode::stopped);
}

TEST(DiscPlayer, DetectsARemovedMediumInAReadWhoseResultIsNotWantedAnyMore) {
    const auto disc = longDisc();
    disc->vanishFrom(0);
    disc->hold();
    DiscPlayer player(disc);
    ASSERT_TRUE(player.play(0, 100).ok());
    disc->waitForReads(1);
    player.stop();
    disc->release();
    while (!player.gone()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(player.mode(), PlayerMode::stopped);
}

// One thread pulls frames while another issues many commands. The pulled frames must be runs of
// consecutive frames, and a run may begin only at a position that a command can have set.
TEST(DiscPlayer, DeliversExactFramesWhileAnotherThreadIssuesCommands) {
    const auto disc = longDisc();
    DiscPlayer player(disc);
    constexpr std::int64_t grid = 100; // commands set positions on multiples of this many sectors
    std::atomic<bool> done = false;
    std::int64_t played = 0;
    std::int64_t violations = 0;
    std::thread engine([&] {
        std::vector<StereoFrame> block(blockFrames);
        StereoFrame last = frameAt(-1);
        while (!done) {
            const Pulled pulled = player.pull(block);
            for (std::size_t i = 0; i < pulled.frames; ++i) {
                const std::int64_t before =
                    static_cast<std::uint16_t>(last.left) + std::int64_t{last.right} * 65536;
                const std::int64_t now = static_cast<std::uint16_t>(block[i].left) +
                                         std::int64_t{block[i].right} * 65536;
                if (now != before + 1 && now % (grid * framesPerSector) != 0) {
                    ++violations;
                }
                last = block[i];
            }
            played += static_cast<std::int64_t>(pulled.frames);
            if (pulled.frames == 0) {
                std::this_thread::yield();
            }
        }
    });
    std::mt19937 random(20240607); // a fixed seed: the same commands in every run
    for (int i = 0; i < 3000; ++i) {
        const std::int64_t sector = grid * static_cast<std::int64_t>(random() % 90);
        switch (random() % 8) {
        case 0:
            player.pause();
            break;
        case 1:
            player.resume();
            break;
        case 2:
            player.stop();
            break;
        case 3:
            player.seek(sector);
            break;
        default:
            ASSERT_TRUE(
                player.play(sector, sector + 1 + static_cast<std::int64_t>(random() % 900)).ok());
        }
        if (player.positionInFrames() > 10000 * framesPerSector) {
            ++violations;
        }
        std::this_thread::yield();
    }
    // The last range is played completely, so that some sound is played even on a slow machine.
    ASSERT_TRUE(player.play(0, 30).ok());
    while (player.mode() == PlayerMode::playing) {
        std::this_thread::yield();
    }
    done = true;
    engine.join();
    EXPECT_EQ(violations, 0);
    EXPECT_GE(played, 30 * framesPerSector);
    EXPECT_LE(disc->furthest(), 10000);
}

TEST(DiscPlayer, APlayFailsWhileNoThreadCanBeStarted) {
    fakes::LimitedThreads threads(0);
    DiscPlayer player(longDisc(), threads.starter());
    player.seek(5);
    const Status refused = player.play(7, 9);
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().number, ErrorNumber::deviceUnavailable);
    EXPECT_EQ(player.mode(), PlayerMode::stopped);
    EXPECT_EQ(player.positionInFrames(), 5 * framesPerSector);
    threads.free(1);
    ASSERT_TRUE(player.play(7, 9).ok());
    EXPECT_EQ(playToItsEnd(player), framesAt(7 * framesPerSector, 2 * framesPerSector));
    ASSERT_TRUE(player.play(1, 2).ok()) << "play() must not start a second thread";
}

} // namespace
} // namespace sonarith::disc
