// SPDX-License-Identifier: GPL-3.0-or-later
// Tests ParanoiaSectors with libcdio's real paranoia reader, on a disc image that libcdio treats as
// a drive.
#include "platform/linux/disc/paranoia_sectors.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

using namespace std::chrono_literals;
using sound::StereoFrame;

constexpr std::int64_t imageSectors = 400;
/// In sectors; less than imageSectors, as on a disc on which a session gap or data follows the
/// sound.
constexpr std::int64_t endOfSound = 300;

class ParanoiaSectorsTest : public testing::Test {
  protected:
    void SetUp() override {
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        folder_ = std::filesystem::path(testing::TempDir()) /
                  (std::string("paranoia_") + test->name() + std::to_string(::getpid()));
        std::filesystem::create_directories(folder_);
        std::mt19937 random(7); // noise, so that no two positions match by chance
        for (std::int64_t i = 0; i < imageSectors * framesPerSector; ++i) {
            frames_.push_back(
                {static_cast<std::int16_t>(random()), static_cast<std::int16_t>(random())});
        }
        std::ofstream bin(folder_ / "disc.bin", std::ios::binary);
        bin.write(reinterpret_cast<const char*>(frames_.data()),
                  static_cast<std::streamsize>(imageSectors * bytesPerSector));
        bin.close();
        std::ofstream(folder_ / "disc.cue") << "FILE \"disc.bin\" BINARY\n"
                                               "  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
                                               "  TRACK 02 AUDIO\n    INDEX 01 00:02:00\n";
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    CdioHandle openDisc() const { return openCdio((folder_ / "disc.cue").string(), DRIVER_BINCUE); }

    /// A reader of the disc. Each sector of `bad_` makes `failuresPerSector_` commands fail. Later
    /// commands can read the sector. While `gone_` is true, every command fails.
    std::unique_ptr<ParanoiaSectors> makeReader() {
        CdioHandle cdio = openDisc();
        CdIo_t* const raw = cdio.get();
        auto command = [this, raw](std::int64_t first, std::int64_t count, std::byte* out) {
            if (++commands_ == stopAtCommand_) {
                stop_.request_stop();
            }
            furthest_ = std::max(furthest_, first + count);
            largest_ = std::max(largest_, count);
            if (gone_) {
                return false;
            }
            for (std::int64_t sector = first; sector < first + count; ++sector) {
                if (bad_.contains(sector) && failureCounts_[sector]++ < failuresPerSector_) {
                    return false;
                }
            }
            return cdio_read_audio_sectors(raw, out, static_cast<lsn_t>(first),
                                           static_cast<std::uint32_t>(count)) == DRIVER_OP_SUCCESS;
        };
        return std::make_unique<ParanoiaSectors>(std::move(cdio), command,
                                                 [this] { return gone_; });
    }

    std::vector<StereoFrame> sector(std::int64_t number) const {
        const auto first = frames_.begin() + number * framesPerSector;
        return {first, first + framesPerSector};
    }

    std::filesystem::path folder_;
    std::vector<StereoFrame> frames_;
    std::set<std::int64_t> bad_;
    std::map<std::int64_t, int> failureCounts_;
    int failuresPerSector_ = 1;
    bool gone_ = false;
    int commands_ = 0;
    int stopAtCommand_ = 0;
    std::stop_source stop_;
    std::int64_t furthest_ = 0;
    std::int64_t largest_ = 0;
};

constexpr ReadEffort::Plan patient{Effort::repair, 1h};
constexpr ReadEffort::Plan single{Effort::once, 1h};

TEST_F(ParanoiaSectorsTest, TheRawTocHasTheTracksAndTheLeadOutOfTheDisc) {
    const CdioHandle cdio = openDisc();
    ASSERT_TRUE(cdio);
    const RawToc toc = rawTocOf(cdio.get());
    ASSERT_EQ(toc.tracks.size(), 2u);
    EXPECT_EQ(toc.tracks[0].kind, TrackKind::audio);
    EXPECT_EQ(toc.tracks[0].start, 0);
    EXPECT_EQ(toc.tracks[1].start, 150);
    EXPECT_EQ(toc.leadOut, imageSectors);
}

TEST_F(ParanoiaSectorsTest, DeliversEverySampleAndNeverReadsPastTheEndOfTheSound) {
    const auto reader = makeReader();
    reader->seek(20, endOfSound);
    std::vector<StereoFrame> out(framesPerSector);
    for (std::int64_t i = 20; i < endOfSound; ++i) {
        ASSERT_EQ(reader->next(patient, out, {}), SectorOutcome::ok) << i;
        ASSERT_EQ(out, sector(i)) << i;
    }
    EXPECT_EQ(furthest_, endOfSound);
    EXPECT_LE(largest_, 25);
}

TEST_F(ParanoiaSectorsTest, DeliversTheRightSectorsAfterSeeksAndSingleReads) {
    const auto reader = makeReader();
    std::vector<StereoFrame> out(framesPerSector);
    for (const std::int64_t place : {100, 10, 290, 150}) {
        reader->seek(place, endOfSound);
        for (std::int64_t i = place; i < place + 9; ++i) {
            const bool once = i % 3 == 1;
            ASSERT_EQ(reader->next(once ? single : patient, out, {}), SectorOutcome::ok) << i;
            ASSERT_EQ(out, sector(i)) << i;
        }
    }
}

TEST_F(ParanoiaSectorsTest, RepairsSectorsThatCanBeReadEventually) {
    bad_ = {60, 61, 90};
    // Commands of three sizes are tried one after the other: 25 sectors, 8 sectors, one sector.
    // With three failures, the first damaged sector fails once in a command of each size.
    failuresPerSector_ = 3;
    const auto reader = makeReader();
    reader->seek(40, endOfSound);
    std::vector<StereoFrame> out(framesPerSector);
    for (std::int64_t i = 40; i < 120; ++i) {
        ASSERT_THAT(reader->next(patient, out, {}),
                    testing::AnyOf(SectorOutcome::ok, SectorOutcome::repaired));
        ASSERT_EQ(out, sector(i)) << i;
    }
    EXPECT_FALSE(failureCounts_.empty());
}

TEST_F(ParanoiaSectorsTest, OnlyTheSectorThatCannotBeReadIsSilent) {
    bad_ = {60};
    failuresPerSector_ = INT_MAX;
    const auto reader = makeReader();
    reader->seek(55, endOfSound);
    std::vector<StereoFrame> out(framesPerSector);
    std::vector<std::int64_t> damaged;
    for (std::int64_t i = 55; i < 70; ++i) {
        if (reader->next(patient, out, {}) == SectorOutcome::silent) {
            damaged.push_back(i);
        } else {
            ASSERT_EQ(out, sector(i)) << i;
        }
    }
    EXPECT_THAT(damaged, testing::ElementsAre(60));
    EXPECT_LT(failureCounts_[60], 50);
}

TEST_F(ParanoiaSectorsTest, DeliversSilenceForAFailedSingleRead) {
    bad_ = {60};
    failuresPerSector_ = INT_MAX;
    const auto reader = makeReader();
    reader->seek(60, endOfSound);
    std::vector<StereoFrame> out(framesPerSector, {5, 5});
    EXPECT_EQ(reader->next(single, out, {}), SectorOutcome::silent);
    EXPECT_EQ(out, std::vector<StereoFrame>(framesPerSector));
    EXPECT_EQ(reader->next(single, out, {}), SectorOutcome::ok);
    EXPECT_EQ(out, sector(61));
}

TEST_F(ParanoiaSectorsTest, SectorsThatWereReadAheadAreOkEvenIfALaterSectorIsUnreadable) {
    bad_ = {60};
    failuresPerSector_ = INT_MAX;
    const auto reader = makeReader();
    reader->seek(20, endOfSound);
    std::vector<StereoFrame> out(framesPerSector);
    // The commands for these sectors read ahead and find sector 60.
    for (std::int64_t i = 20; i < 30; ++i) {
        ASSERT_NE(reader->next(patient, out, {}), SectorOutcome::silent) << i;
        ASSERT_EQ(out, sector(i)) << i;
    }
    const int commands = commands_;
    for (std::int64_t i = 30; i < 60; ++i) {
        ASSERT_EQ(reader->next(patient, out, {}), SectorOutcome::ok) << i;
        ASSERT_EQ(out, sector(i)) << i;
    }
    EXPECT_EQ(commands_, commands);
    EXPECT_EQ(reader->next(patient, out, {}), SectorOutcome::silent);
}

TEST_F(ParanoiaSectorsTest, EndsRepairsAtTheTimeLimit) {
    for (std::int64_t i = 60; i < 80; ++i) {
        bad_.insert(i);
    }
    failuresPerSector_ = INT_MAX;
    const auto reader = makeReader();
    reader->seek(60, endOfSound);
    std::vector<StereoFrame> out(framesPerSector);
    for (std::int64_t i = 60; i < 80; ++i) {
        EXPECT_EQ(reader->next({Effort::repair, 0s}, out, {}), SectorOutcome::silent) << i;
    }
    // The first failed command for a sector ends its repair, because the time limit of 0 s has
    // passed. One more command is then issued for the sector alone (see attemptOnce()).
    EXPECT_LE(commands_, 2 * 20);
    // The library's cache must not contain the silence that replaced the sectors.
    failuresPerSector_ = 0;
    for (std::int64_t i = 80; i < 120; ++i) {
        ASSERT_EQ(reader->next(patient, out, {}), SectorOutcome::ok) << i;
        ASSERT_EQ(out, sector(i)) << i;
    }
    reader->seek(60, endOfSound);
    ASSERT_EQ(reader->next(patient, out, {}), SectorOutcome::ok);
    EXPECT_EQ(out, sector(60));
}

TEST_F(ParanoiaSectorsTest, HasNoTimeLimitWhileNothingFails) {
    const auto reader = makeReader();
    reader->seek(60, endOfSound);
    std::vector<StereoFrame> out(framesPerSector);
    EXPECT_EQ(reader->next({Effort::repair, 0s}, out, {}), SectorOutcome::ok);
    EXPECT_EQ(out, sector(60));
}

TEST_F(ParanoiaSectorsTest, IssuesNoCommandAfterAStopRequest) {
    bad_ = {60, 61, 62};
    failuresPerSector_ = INT_MAX;
    const auto reader = makeReader();
    std::vector<StereoFrame> out(framesPerSector);
    for (const ReadEffort::Plan plan : {patient, single}) {
        for (const int command : {1, 2, 3, 7}) {
            reader->seek(60, endOfSound);
            stop_ = std::stop_source();
            commands_ = 0;
            stopAtCommand_ = command;
            for (int i = 0; i < 4 && !stop_.stop_requested(); ++i) {
                static_cast<void>(reader->next(plan, out, stop_.get_token()));
            }
            EXPECT_TRUE(stop_.stop_requested());
            EXPECT_EQ(commands_, command);
        }
    }
    // The library's cache must not contain any result of the interrupted reads.
    stopAtCommand_ = 0;
    failuresPerSector_ = 0;
    reader->seek(60, endOfSound);
    ASSERT_EQ(reader->next(patient, out, {}), SectorOutcome::ok);
    EXPECT_EQ(out, sector(60));
}

TEST_F(ParanoiaSectorsTest, ReportsARemovedMediumAfterOneFailedCommandAndThenIssuesNoCommand) {
    const auto reader = makeReader();
    reader->seek(60, endOfSound);
    std::vector<StereoFrame> out(framesPerSector);
    gone_ = true;
    EXPECT_EQ(reader->next(patient, out, {}), SectorOutcome::gone);
    EXPECT_EQ(commands_, 1);
    EXPECT_EQ(reader->next(single, out, {}), SectorOutcome::gone);
    EXPECT_EQ(commands_, 1);
}

} // namespace
} // namespace sonarith::disc
