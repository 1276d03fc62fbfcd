// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mp3_player_source.h"

#include <gmock/gmock.h>

#include <array>
#include <chrono>

#include "platform/linux/mp3/mp3_fixture.h"
#include "support/held_calls.h"
#include "support/limited_threads.h"
#include "support/waiting.h"

namespace sonarith::mp3 {
namespace {

using namespace std::chrono_literals;
using fixture::encoded;
using sound::StereoFrame;
using sound::Supply;

class Mp3PlayerSourceTest : public testing::Test {
  protected:
    std::shared_ptr<Mp3PlayerSource> playFile(const std::filesystem::path& path) {
        return std::make_shared<Mp3PlayerSource>(path, [this] { return now; });
    }
    std::shared_ptr<Mp3PlayerSource> play(const fixture::Data& data) {
        fixture::writeFile(folder / "a.mp3", data);
        return playFile(folder / "a.mp3");
    }
    /// Pulls until the end, as the card does.
    std::vector<StereoFrame> all(Mp3PlayerSource& player) {
        std::vector<StereoFrame> frames;
        EXPECT_TRUE(fakes::eventually([&] {
            sound::Pulled pulled{};
            do {
                pulled = player.pull(block);
                frames.insert(frames.end(), block.begin(),
                              block.begin() + static_cast<std::ptrdiff_t>(pulled.frames));
            } while (pulled.supply == Supply::flowing);
            return pulled.supply == Supply::ended;
        }));
        return frames;
    }
    fakes::TempFolder folder;
    std::chrono::nanoseconds now{};
    std::array<StereoFrame, 441> block{};
};

TEST_F(Mp3PlayerSourceTest, DoesNotChangeTheSamplesOfAFileThatHasTheCardsRate) {
    const auto frames = all(*play(fixture::ordinary()));
    const fixture::Samples samples = fixture::sequentially(fixture::ordinary()).samples;
    ASSERT_EQ(frames.size() * 2, samples.size());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        ASSERT_EQ(frames[i], (StereoFrame{samples[2 * i], samples[2 * i + 1]}));
    }
}

TEST_F(Mp3PlayerSourceTest, ConvertsOtherRatesToTheCardsRate) {
    EXPECT_NEAR(static_cast<double>(all(*play(encoded(22050, 1, "-b 64"))).size()), 4 * 44100, 50);
    EXPECT_NEAR(static_cast<double>(all(*play(encoded(48000, 2, "-b 128"))).size()), 4 * 44100, 50);
}

TEST_F(Mp3PlayerSourceTest, EndsWithoutSoundIfTheFileHasNoFrame) {
    EXPECT_TRUE(all(*play(fixture::junk(5000))).empty());
}

TEST_F(Mp3PlayerSourceTest, EndsWithoutSoundIfTheFileCannotBeRead) {
    EXPECT_TRUE(all(*playFile(folder / "none")).empty());
    EXPECT_TRUE(all(*playFile(folder.path())).empty());
}

TEST_F(Mp3PlayerSourceTest, PlaysOnlyTheFramesOfTheMostFrequentFormat) {
    using fixture::operator+;
    const fixture::Data jingle = fixture::part(encoded(48000, 2, "-t -b 128"), 0, 4 * 384);
    const auto frames = all(*play(jingle + fixture::ordinary()));
    EXPECT_EQ(frames.size() * 2, fixture::sequentially(fixture::ordinary()).samples.size());
}

TEST_F(Mp3PlayerSourceTest, EndsEarlyIfTheFileIsShortenedDuringPlaying) {
    fixture::writeFile(folder / "a.mp3", fixture::ordinary());
    auto player = playFile(folder / "a.mp3");
    EXPECT_TRUE(fakes::eventually([&] { return player->pull(block).supply == Supply::flowing; }));
    // The player's thread may already have read the first three of the file's four seconds.
    std::filesystem::resize_file(folder / "a.mp3", 20'000);
    EXPECT_LT(all(*player).size(), 7U * 44100 / 2);
}

TEST_F(Mp3PlayerSourceTest, CanBeDestroyedWhileItsRingIsFull) {
    auto player = play(encoded(44100, 2, "-b 128"));
    EXPECT_TRUE(fakes::eventually([&] { return player->pull(block).supply == Supply::flowing; }));
    player.reset(); // the thread may be waiting for space in the full ring at this moment
}

TEST_F(Mp3PlayerSourceTest, StarvesOnlyBrieflyWhileTheDiskHangsAndThenDeliversSilence) {
    fixture::writeFile(folder / "a.mp3", fixture::ordinary());
    std::shared_ptr<Mp3PlayerSource> player;
    test::HeldCalls disk({SYS_openat}, test::ofPath("a.mp3"));
    disk.atEnd([&] { player.reset(); });
    ASSERT_TRUE(disk.run([&] { player = playFile(folder / "a.mp3"); }));
    ASSERT_TRUE(disk.waitForCall());
    EXPECT_EQ(player->pull(block).supply, Supply::starving);
    now += Mp3PlayerSource::patience - 1ms;
    EXPECT_EQ(player->pull(block).supply, Supply::starving);
    now += 1ms;
    block.fill({1, 1});
    const sound::Pulled pulled = player->pull(block);
    EXPECT_EQ(pulled.supply, Supply::flowing);
    EXPECT_EQ(pulled.frames, block.size());
    EXPECT_THAT(block, testing::Each(StereoFrame{}));
    disk.release();
    // The silence ends as soon as sound is ready.
    EXPECT_TRUE(fakes::eventually([&] {
        return player->pull(block).supply == Supply::flowing && block != decltype(block){};
    }));
}

TEST_F(Mp3PlayerSourceTest, CanBeDestroyedWhileTheDiskHangs) {
    fixture::writeFile(folder / "a.mp3", fixture::ordinary());
    for (const std::uint32_t call : {SYS_openat, SYS_pread64}) {
        std::shared_ptr<Mp3PlayerSource> player;
        test::HeldCalls disk({call}, test::ofPath("a.mp3"));
        disk.atEnd([&] { player.reset(); });
        ASSERT_TRUE(disk.run([&] { player = playFile(folder / "a.mp3"); }));
        ASSERT_TRUE(disk.waitForCall());
        EXPECT_TRUE(disk.run([&] { player.reset(); }));
    }
}

TEST_F(Mp3PlayerSourceTest, EndsAtOnceIfNoThreadCanBeStarted) {
    fixture::writeFile(folder / "a.mp3", fixture::ordinary());
    const fakes::LimitedThreads threads(0);
    Mp3PlayerSource player(
        folder / "a.mp3", [this] { return now; }, threads.starter());
    const sound::Pulled pulled = player.pull(block);
    EXPECT_EQ(pulled.frames, 0U);
    EXPECT_EQ(pulled.supply, Supply::ended);
}

} // namespace
} // namespace sonarith::mp3
