// SPDX-License-Identifier: GPL-3.0-or-later
// Tests how a player is destroyed while its disc is being read. disc_player_test.cpp contains the
// other tests.
#include "platform/linux/disc/disc_player.h"

#include <atomic>
#include <thread>

#include <gmock/gmock.h>

#include "platform/linux/disc/fake_disc.h"
#include "support/waiting.h"

namespace sonarith::disc {
namespace {

Table longTable() {
    return {{{TrackKind::audio, 10000}}};
}

/// A disc whose reads end only when a stop is requested.
class ScratchedDisc : public Disc {
  public:
    const Table& table() const override { return table_; }
    std::string remark() const override { return {}; }
    Damage damageIn(std::int64_t, std::int64_t) const override { return {}; }
    std::atomic<int> begun = 0;
    std::atomic<int> interrupted = 0;

  private:
    ReadOutcome readSectors(std::int64_t /*first*/, std::span<sound::StereoFrame> /*out*/,
                            const std::stop_token& stop) override {
        ++begun;
        while (!stop.stop_requested()) {
            std::this_thread::yield();
        }
        ++interrupted;
        return ReadOutcome::interrupted;
    }
    const Table table_ = longTable();
};

TEST(ADiscPlayer, CanBeDestroyedInTheMiddleOfARead) {
    const auto disc = std::make_shared<FakeDisc>(longTable().tracks);
    disc->hold();
    auto player = std::make_unique<DiscPlayer>(disc);
    ASSERT_TRUE(player->play(0, 1000).ok());
    disc->waitForReads(1);
    std::thread destroyer([&player] { player.reset(); });
    disc->release();
    destroyer.join();
    EXPECT_TRUE(fakes::eventually([&] { return disc.use_count() == 1; }));
}

TEST(ADiscPlayer, CanBeDestroyedWhileAReadHangs) {
    const auto disc = std::make_shared<FakeDisc>(longTable().tracks);
    disc->hold();
    auto player = std::make_unique<DiscPlayer>(disc);
    ASSERT_TRUE(player->play(0, 1000).ok());
    disc->waitForReads(1);
    player.reset();
    EXPECT_GT(disc.use_count(), 1) << "the hanging read must own the disc";
    disc->release();
    EXPECT_TRUE(fakes::eventually([&] { return disc.use_count() == 1; }));
    EXPECT_EQ(disc->reads().size(), 1u) << "no read may begin after the player was destroyed";
}

TEST(ADiscPlayer, StopsItsCurrentReadInItsDestructor) {
    const auto disc = std::make_shared<ScratchedDisc>();
    auto player = std::make_unique<DiscPlayer>(disc);
    ASSERT_TRUE(player->play(0, 1000).ok());
    EXPECT_TRUE(fakes::eventually([&] { return disc->begun == 1; }));
    player->stop();
    player.reset();
    EXPECT_TRUE(fakes::eventually([&] { return disc->interrupted == 1; }));
    EXPECT_TRUE(fakes::eventually([&] { return disc.use_count() == 1; }));
}

} // namespace
} // namespace sonarith::disc
