// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/sector_commands.h"

#include <set>
#include <vector>

#include <gmock/gmock.h>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

// A drive whose sectors each contain their own number, with optional bad sectors and a maximum
// command size.
struct FakeSectorDrive {
    std::vector<std::pair<std::int64_t, std::int64_t>> commands; ///< first, count
    std::set<std::int64_t> bad;
    std::int64_t most = 1000;

    bool operator()(std::int64_t first, std::int64_t count, std::byte* out) {
        commands.emplace_back(first, count);
        if (count > most) {
            return false;
        }
        for (std::int64_t i = 0; i < count; ++i) {
            if (bad.contains(first + i)) {
                return false;
            }
            out[i * bytesPerSector] = static_cast<std::byte>(first + i);
        }
        return true;
    }
};

class SectorCommandsTest : public testing::Test {
  protected:
    FakeSectorDrive drive;
    SectorCommands commands{[this](std::int64_t first, std::int64_t count, std::byte* out) {
        return drive(first, count, out);
    }};
    std::vector<std::byte> buffer{std::size_t{100} * bytesPerSector};

    void SetUp() override { commands.setBounds(0, 200); }

    /// The numbers in the first `count` sectors of the buffer.
    std::vector<int> numbers(std::int64_t count) const {
        std::vector<int> found;
        for (std::int64_t i = 0; i < count; ++i) {
            found.push_back(static_cast<int>(buffer[static_cast<std::size_t>(i) * bytesPerSector]));
        }
        return found;
    }
};

TEST_F(SectorCommandsTest, ReadsAtMostTwentyFiveSectorsInOneCommand) {
    EXPECT_EQ(commands.read(10, 60, buffer.data()), 60);
    EXPECT_THAT(drive.commands, ElementsAre(Pair(10, 25), Pair(35, 25), Pair(60, 10)));
    EXPECT_EQ(numbers(60).front(), 10);
    EXPECT_EQ(numbers(60).back(), 69);
}

TEST_F(SectorCommandsTest, UsesEightSectorsPerCommandAfterAFailure) {
    drive.most = 8;
    EXPECT_EQ(commands.read(0, 20, buffer.data()), 20);
    EXPECT_THAT(drive.commands, ElementsAre(Pair(0, 20), Pair(0, 8), Pair(8, 8), Pair(16, 4)));
    drive.commands.clear();
    EXPECT_EQ(commands.read(20, 9, buffer.data()), 9);
    EXPECT_THAT(drive.commands, ElementsAre(Pair(20, 8), Pair(28, 1)));
}

TEST_F(SectorCommandsTest, DeliversEverythingBeforeABadSector) {
    drive.bad = {12};
    EXPECT_EQ(commands.read(0, 30, buffer.data()), 12);
    EXPECT_EQ(numbers(12).back(), 11);
    // The failed command of 25 sectors is repeated in commands of eight. Only the failed command of
    // eight is repeated sector by sector, up to the bad sector.
    EXPECT_THAT(drive.commands, ElementsAre(Pair(0, 25), Pair(0, 8), Pair(8, 8), Pair(8, 1),
                                            Pair(9, 1), Pair(10, 1), Pair(11, 1), Pair(12, 1)));
}

TEST_F(SectorCommandsTest, ReadsNoSectorOutsideTheBounds) {
    commands.setBounds(50, 60);
    EXPECT_EQ(commands.read(55, 50, buffer.data()), 5);
    EXPECT_THAT(drive.commands, ElementsAre(Pair(55, 5)));
    drive.commands.clear();
    EXPECT_EQ(commands.read(60, 1, buffer.data()), 0);
    EXPECT_EQ(commands.read(70, 10, buffer.data()), 0);
    EXPECT_EQ(commands.read(49, 10, buffer.data()), 0);
    EXPECT_THAT(drive.commands, IsEmpty());
}

TEST_F(SectorCommandsTest, IssuesNoCommandAfterMayGoOnHasReturnedFalse) {
    int left = 2;
    commands.setMayGoOn([&left] { return left-- > 0; });
    EXPECT_EQ(commands.read(0, 100, buffer.data()), 50);
    EXPECT_THAT(drive.commands, ElementsAre(Pair(0, 25), Pair(25, 25)));
}

} // namespace
} // namespace sonarith::disc
