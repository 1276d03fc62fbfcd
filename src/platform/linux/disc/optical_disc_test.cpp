// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/optical_disc.h"

#include <gmock/gmock.h>

#include "platform/linux/disc/fake_disc.h"

namespace sonarith::disc {
namespace {

using namespace std::chrono_literals;
using enum TrackKind;
using sound::StereoFrame;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

// Records the calls to the drive and controls the drive's behaviour. The time advances by
// sectorTime with each sector.
struct SectorsState {
    std::vector<std::pair<std::int64_t, std::int64_t>> seeks; ///< first, end
    std::vector<Effort> efforts;
    std::int64_t cursor = 0;
    std::int64_t badFrom = INT64_MAX; ///< the first damaged sector; all later ones are damaged too
    SectorOutcome damagedOutcome = SectorOutcome::silent;
    std::int64_t repairedFrom = INT64_MAX;
    std::int64_t goneFrom = INT64_MAX;
    ReadEffort::Duration now{0};
    ReadEffort::Duration sectorTime{0};
    std::int64_t stopAt = INT64_MAX; ///< the sector during which a stop is requested
    std::stop_source stop;
};

class FakeSectors : public AudioSectors {
  public:
    explicit FakeSectors(std::shared_ptr<SectorsState> state) : state_(std::move(state)) {}
    void seek(std::int64_t first, std::int64_t end) override {
        state_->seeks.emplace_back(first, end);
        state_->cursor = first;
    }
    SectorOutcome next(ReadEffort::Plan plan, std::span<StereoFrame> out,
                       const std::stop_token& stop) override {
        state_->efforts.push_back(plan.effort);
        state_->now += state_->sectorTime;
        const std::int64_t sector = state_->cursor++;
        if (sector == state_->stopAt) {
            state_->stop.request_stop();
        }
        EXPECT_EQ(stop.stop_requested(), sector == state_->stopAt);
        if (sector >= state_->goneFrom) {
            return SectorOutcome::gone;
        }
        std::ranges::copy(framesAt(sector * framesPerSector, framesPerSector), out.begin());
        if (sector >= state_->repairedFrom) {
            return SectorOutcome::repaired;
        }
        return sector >= state_->badFrom ? state_->damagedOutcome : SectorOutcome::ok;
    }

  private:
    std::shared_ptr<SectorsState> state_;
};

class OpticalDiscTest : public testing::Test {
  protected:
    std::shared_ptr<SectorsState> drive = std::make_shared<SectorsState>();
    // The disc has 28600 sectors of sound, the gap between the sessions (11400 sectors, which are
    // not on the time line), 10000 sectors of data and 10000 of sound.
    OpticalDisc disc{
        *OpticalLayout::of({{{audio, 0}, {data, 40000}, {audio, 50000}}, 60000, 40000}),
        std::make_unique<FakeSectors>(drive), [this] {
            return drive->now;
        }};

    std::vector<StereoFrame> read(std::int64_t first, std::int64_t sectors) {
        std::vector<StereoFrame> frames(static_cast<std::size_t>(sectors) * framesPerSector,
                                        {9, 9});
        EXPECT_EQ(disc.read(first, frames), ReadOutcome::ok);
        return frames;
    }
};

std::vector<StereoFrame> sectorsAt(std::int64_t first, std::int64_t count) {
    return framesAt(first * framesPerSector, count * framesPerSector);
}

std::vector<StereoFrame> silentSectors(std::int64_t sectors) {
    return std::vector<StereoFrame>(static_cast<std::size_t>(sectors) * framesPerSector);
}

TEST_F(OpticalDiscTest, SeeksOnlyIfAReadDoesNotContinueThePreviousOne) {
    EXPECT_EQ(read(100, 25), sectorsAt(100, 25));
    EXPECT_EQ(read(125, 25), sectorsAt(125, 25));
    EXPECT_EQ(read(7, 1), sectorsAt(7, 1));
    EXPECT_THAT(drive->seeks, ElementsAre(Pair(100, 28600), Pair(7, 28600)));
    EXPECT_EQ(disc.remark(), "");
}

TEST_F(OpticalDiscTest, RequestsSoundAfterTheGapByTheDrivesSectorNumber) {
    EXPECT_EQ(read(38600, 2), sectorsAt(50000, 2));
    EXPECT_THAT(drive->seeks, ElementsAre(Pair(50000, 60000)));
}

TEST_F(OpticalDiscTest, RequestsNoDataSectorsAndNoSectorsPastTheEnd) {
    EXPECT_EQ(read(30000, 3), silentSectors(3));
    EXPECT_EQ(read(48600, 3), silentSectors(3));
    EXPECT_THAT(drive->efforts, IsEmpty());

    std::vector<StereoFrame> expected = sectorsAt(28599, 1);
    std::ranges::copy(silentSectors(1), std::back_inserter(expected));
    EXPECT_EQ(read(28599, 2), expected);
    EXPECT_EQ(drive->efforts.size(), 1u);
}

TEST_F(OpticalDiscTest, CountsDamagedSectorsInItsRemark) {
    drive->badFrom = 12;
    EXPECT_EQ(read(10, 3), sectorsAt(10, 3));
    EXPECT_THAT(disc.remark(), testing::StartsWith("1 sector of the disc"));
    EXPECT_EQ(read(13, 3), sectorsAt(13, 3));
    EXPECT_THAT(disc.remark(), testing::StartsWith("4 sectors of the disc"));
}

TEST_F(OpticalDiscTest, BoundsTheTimeOfOneReadAndDeliversSilenceForTheRemainingSectors) {
    drive->sectorTime = 1s;
    drive->badFrom = 0;
    const std::vector<StereoFrame> frames = read(0, 25);
    using enum Effort;
    EXPECT_THAT(drive->efforts,
                ElementsAre(repair, repair, repair, repair, once, once, once, once));
    EXPECT_EQ(drive->now, 8s);
    EXPECT_EQ(std::vector<StereoFrame>(frames.begin(), frames.begin() + 8 * framesPerSector),
              sectorsAt(0, 8));
    EXPECT_EQ(std::vector<StereoFrame>(frames.begin() + 8 * framesPerSector, frames.end()),
              silentSectors(17));
    EXPECT_THAT(disc.remark(), testing::StartsWith("25 sectors"));

    // The next read begins with a seek to its first sector. The first read exceeded its time
    // budget, so the bound of the next read is half as long: 4 s instead of 8 s. This is enough for
    // four sectors of 1 s each.
    EXPECT_EQ(read(25, 4), sectorsAt(25, 4));
    EXPECT_EQ(drive->now, 12s);
    EXPECT_THAT(drive->seeks, ElementsAre(Pair(0, 28600), Pair(25, 28600)));
}

TEST_F(OpticalDiscTest, LosesNoSectorOfASlowDrive) {
    drive->sectorTime = 30s;
    EXPECT_EQ(read(0, 25), sectorsAt(0, 25));
    EXPECT_THAT(drive->efforts, testing::Each(Effort::repair));
    EXPECT_EQ(disc.remark(), "");
}

TEST_F(OpticalDiscTest, RepairedSectorsUseUpTheTimeBudgetButDoNotCountAsDamaged) {
    drive->sectorTime = 3s;
    drive->repairedFrom = 0;
    EXPECT_EQ(read(0, 3), sectorsAt(0, 3));
    EXPECT_THAT(drive->efforts, ElementsAre(Effort::repair, Effort::repair, Effort::once));
    EXPECT_EQ(disc.remark(), "");
}

TEST_F(OpticalDiscTest, IssuesNoCommandAfterAStopRequestAndCanReadAgainLater) {
    drive->badFrom = 0;
    drive->stopAt = 3;
    std::vector<StereoFrame> frames = silentSectors(10);
    EXPECT_EQ(disc.read(0, frames, drive->stop.get_token()), ReadOutcome::interrupted);
    EXPECT_EQ(drive->efforts.size(), 4u);
    EXPECT_EQ(disc.read(4, frames, drive->stop.get_token()), ReadOutcome::interrupted);
    EXPECT_EQ(drive->efforts.size(), 4u);
    EXPECT_THAT(disc.remark(), testing::StartsWith("3 sectors"))
        << "the fourth sector, whose read was interrupted, must not be counted";
    drive->stopAt = INT64_MAX;
    EXPECT_EQ(read(3, 10), sectorsAt(3, 10));
}

TEST_F(OpticalDiscTest, AddsItsDamageToTheExistingRecord) {
    const auto damage = std::make_shared<DamageRecord>();
    damage->note(40, Delivery::silence);
    damage->note(41, Delivery::guess);
    OpticalDisc again(
        *OpticalLayout::of({{{audio, 0}}, 10000, 0}), std::make_unique<FakeSectors>(drive),
        [] { return 0s; }, damage);
    EXPECT_THAT(again.remark(), testing::StartsWith("2 sectors of the disc"));
    drive->badFrom = 41;
    std::vector<StereoFrame> frames = silentSectors(3);
    EXPECT_EQ(again.read(40, frames), ReadOutcome::ok);
    EXPECT_THAT(again.remark(), testing::StartsWith("3 sectors of the disc"));
}

TEST_F(OpticalDiscTest, ReportsHowManySectorsOfARangeWereDamaged) {
    // The second audio track begins at sector 38600 of the time line, which is the drive's sector
    // 50000.
    drive->badFrom = 50002;
    EXPECT_EQ(read(38595, 10).size(), 10u * framesPerSector);
    EXPECT_EQ(disc.damageIn(0, 48600), (Damage{.silent = 3, .guessed = 0}));
    EXPECT_EQ(disc.damageIn(0, 38602), Damage{});
    EXPECT_EQ(disc.damageIn(38603, 38604), (Damage{.silent = 1, .guessed = 0}));
    drive->damagedOutcome = SectorOutcome::guessed;
    EXPECT_EQ(read(38602, 1).size(), 1u * framesPerSector);
    EXPECT_EQ(disc.damageIn(0, 48600), (Damage{.silent = 2, .guessed = 1}));
    EXPECT_EQ(disc.damageIn(0, 999999), (Damage{.silent = 2, .guessed = 1}));
}

TEST_F(OpticalDiscTest, StaysGoneAfterTheDriveHasReportedTheRemoval) {
    drive->goneFrom = 5;
    std::vector<StereoFrame> frames = silentSectors(10);
    EXPECT_EQ(disc.read(0, frames), ReadOutcome::gone);
    EXPECT_EQ(drive->efforts.size(), 6u);
    drive->goneFrom = INT64_MAX; // another disc has been inserted
    EXPECT_EQ(disc.read(0, frames), ReadOutcome::gone);
    EXPECT_EQ(drive->efforts.size(), 6u);
}

} // namespace
} // namespace sonarith::disc
