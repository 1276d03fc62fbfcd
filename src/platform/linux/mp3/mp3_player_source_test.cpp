// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mp3_player_source.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"
#include "support/waiting.h"

namespace sonarith::mp3 {
namespace {

using fixture::encoded;
using sound::StereoFrame;
using sound::Supply;

class Mp3PlayerSourceTest : public testing::Test {
  protected:
    std::shared_ptr<Mp3PlayerSource> play(const fixture::Data& data) {
        fixture::writeFile(folder / "a.mp3", data);
        const auto opened = Mp3PlayerSource::open(folder / "a.mp3");
        EXPECT_TRUE(opened.ok());
        return opened.value();
    }
    /// Pulls until the end, as the card does.
    std::vector<StereoFrame> all(Mp3PlayerSource& player) {
        std::vector<StereoFrame> frames;
        EXPECT_TRUE(fakes::eventually([&] {
            std::array<StereoFrame, 441> block;
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
};

TEST_F(Mp3PlayerSourceTest, GivesTheSamplesOfAFileOfTheCardsRate) {
    const auto frames = all(*play(fixture::ordinary()));
    const fixture::Samples samples = fixture::sequentially(fixture::ordinary()).samples;
    ASSERT_EQ(frames.size() * 2, samples.size());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        ASSERT_EQ(frames[i], (StereoFrame{samples[2 * i], samples[2 * i + 1]}));
    }
}

TEST_F(Mp3PlayerSourceTest, BringsOtherRatesToTheCards) {
    EXPECT_NEAR(static_cast<double>(all(*play(encoded(22050, 1, "-b 64"))).size()), 4 * 44100, 50);
    EXPECT_NEAR(static_cast<double>(all(*play(encoded(48000, 2, "-b 128"))).size()), 4 * 44100, 50);
}

TEST_F(Mp3PlayerSourceTest, EndsAtOnceWhereThereIsNoFrame) {
    EXPECT_TRUE(all(*play(fixture::junk(5000))).empty());
}

TEST_F(Mp3PlayerSourceTest, FailsForAFileThatIsNotThere) {
    EXPECT_FALSE(Mp3PlayerSource::open(folder / "none").ok());
    EXPECT_FALSE(Mp3PlayerSource::open(folder.path()).ok());
}

TEST_F(Mp3PlayerSourceTest, EndsWhileItsRingIsFull) {
    auto player = play(encoded(44100, 2, "-b 128", 8));
    std::array<StereoFrame, 441> block;
    EXPECT_TRUE(fakes::eventually([&] { return player->pull(block).supply == Supply::flowing; }));
    player.reset(); // hangs if the thread waits for room that nobody makes
}

} // namespace
} // namespace sonarith::mp3
