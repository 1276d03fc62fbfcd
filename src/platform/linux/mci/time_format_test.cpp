// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/time_format.h"

#include <gmock/gmock.h>

#include <cmath>
#include <random>

#include "support/fake_disc.h"

namespace sonarith::mci {
namespace {

using fakes::audioTable;
constexpr auto ms = TimeFormat::milliseconds;
constexpr auto hms = TimeFormat::hms;
constexpr auto msf = TimeFormat::msf;
constexpr auto tmsf = TimeFormat::tmsf;

TEST(TimeFormats, AreFoundByTheirNames) {
    EXPECT_EQ(timeFormatNamed("ms"), ms);
    EXPECT_EQ(timeFormatNamed("MilliSeconds"), ms);
    EXPECT_EQ(timeFormatNamed("frames"), std::nullopt);
    EXPECT_EQ(timeFormatNamed(""), std::nullopt);
    for (const TimeFormat format : {ms, hms, msf, tmsf}) {
        EXPECT_EQ(timeFormatNamed(nameOf(format)), format);
    }
}

TEST(Milliseconds, OfASectorsStartAreRoundedToTheNearestInteger) {
    for (std::int64_t sector = 0; sector < 75 * 60 * 100; ++sector) {
        const std::int64_t expected = std::llround(static_cast<double>(sector) * 1000 / 75);
        ASSERT_EQ(millisecondsOfSector(sector), expected) << "sector " << sector;
        ASSERT_EQ(sectorOfMilliseconds(expected), sector);
    }
}

TEST(Milliseconds, BetweenTwoSectorStartsAreRoundedToTheNearestSector) {
    EXPECT_EQ(sectorOfMilliseconds(6), 0); // a sector lasts 13.33 ms
    EXPECT_EQ(sectorOfMilliseconds(7), 1);
    EXPECT_EQ(sectorOfMilliseconds(19), 1);
    EXPECT_EQ(sectorOfMilliseconds(20), 2);
}

TEST(LengthsInMilliseconds, AddUpToTheStartsOfTheTracksForAnyTable) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 200; ++round) {
        std::vector<std::int64_t> lengths;
        for (int i = 0; i < disc::maxTracks; ++i) {
            lengths.push_back(std::uniform_int_distribution<std::int64_t>(0, 30'000)(random));
        }
        const disc::Table table = audioTable(lengths);
        std::int64_t sum = 0;
        for (int track = 1; track <= disc::maxTracks; ++track) {
            const std::int64_t start = table.start(track);
            ASSERT_EQ(positionText(table, start, ms), std::to_string(sum));
            ASSERT_EQ(parsePosition(table, std::to_string(sum), ms).value, start);
            sum += std::stoll(lengthText(start, table.start(track + 1), ms));
        }
        ASSERT_EQ(lengthText(0, table.sectors(), ms), std::to_string(sum));
    }
}

TEST(Lengths, HaveTheTextOfTheirFormat) {
    const std::int64_t sectors = (3 * 60 + 5) * 75 + 74; // 3:05 and 74 sectors
    EXPECT_EQ(lengthText(0, sectors, hms), "00:03:05");
    EXPECT_EQ(lengthText(0, sectors, msf), "03:05:74");
    EXPECT_EQ(lengthText(0, sectors, tmsf), "03:05:74");
    EXPECT_EQ(lengthText(0, sectors, ms), "185987");
    EXPECT_EQ(lengthText(75, 75, ms), "0");
    EXPECT_EQ(lengthText(0, 75LL * 3600 * 2, hms), "02:00:00");
    EXPECT_EQ(lengthText(0, 75LL * 60 * 120, msf), "120:00:00");
}

TEST(Positions, HaveTheTextOfTheirFormat) {
    const disc::Table table = audioTable({100, 75 * 200, 50});
    const std::int64_t sector = 100 + 75 * 65 + 7;
    EXPECT_EQ(positionText(table, sector, tmsf), "02:01:05:07");
    EXPECT_EQ(positionText(table, sector, msf), "01:06:32");
    EXPECT_EQ(positionText(table, sector, hms), "00:01:06");
    EXPECT_EQ(positionText(table, sector, ms), "66427");
    EXPECT_EQ(positionText(table, 0, tmsf), "01:00:00:00");
    EXPECT_EQ(positionText(table, table.sectors(), tmsf), "03:00:00:50");
}

TEST(Positions, InAllFormatsExceptHmsAreParsedBackFromTheirText) {
    const disc::Table table = audioTable({100, 75 * 200, 50});
    for (std::int64_t sector = 0; sector <= table.sectors(); sector += 13) {
        for (const TimeFormat format : {ms, msf, tmsf}) {
            const std::string text = positionText(table, sector, format);
            ASSERT_EQ(parsePosition(table, text, format).value, sector) << text;
        }
    }
}

TEST(Positions, MayOmitTheirLastFields) {
    const disc::Table table = audioTable({75 * 3600 * 2, 75 * 200});
    EXPECT_EQ(parsePosition(table, "2", tmsf).value, table.start(2));
    EXPECT_EQ(parsePosition(table, "02:01", tmsf).value, table.start(2) + 75 * 60);
    EXPECT_EQ(parsePosition(table, "2:0:3", tmsf).value, table.start(2) + 75 * 3);
    EXPECT_EQ(parsePosition(table, "5", msf).value, 75 * 60 * 5);
    EXPECT_EQ(parsePosition(table, "1", hms).value, 75 * 3600);
    EXPECT_EQ(parsePosition(table, "0:00:09", hms).value, 75 * 9);
}

TEST(Positions, BeyondTheirTrackOrTheDiscOrWithTooLargeAFieldAreOutOfRange) {
    const disc::Table table = audioTable({150, 150}); // two tracks of 2 s
    EXPECT_EQ(parsePosition(table, "4000", ms).value, 300);
    for (const std::string_view text : {"4007", "2147483647"}) {
        EXPECT_EQ(parsePosition(table, text, ms).error, MciError::outOfRange) << text;
    }
    EXPECT_EQ(parsePosition(table, "1:2:0:0", tmsf).error, MciError::outOfRange);
    EXPECT_EQ(parsePosition(table, "1:0:2:0", tmsf).value, 150);
    for (const std::string_view text :
         {"0", "3", "100", "1:0:2:1", "1:0:60", "1:0:0:75", "2147483647", "1:2147483647:0:0"}) {
        EXPECT_EQ(parsePosition(table, text, tmsf).error, MciError::outOfRange) << text;
    }
    for (const std::string_view text : {"0:60:0", "0:0:75", "0:4:1", "2147483647:59:74"}) {
        EXPECT_EQ(parsePosition(table, text, msf).error, MciError::outOfRange) << text;
    }
    for (const std::string_view text : {"0:60", "0:0:60", "0:0:5", "2147483647:59:59"}) {
        EXPECT_EQ(parsePosition(table, text, hms).error, MciError::outOfRange) << text;
    }
}

TEST(Positions, WithInvalidNumbersOrTooManyFieldsFailWithBadInteger) {
    const disc::Table table = audioTable({150});
    for (const TimeFormat format : {ms, hms, msf, tmsf}) {
        for (const std::string_view text :
             {"", ":", "x", "-1", "1:", ":1", "1::1", "1.5", "1:1:1:1:1", "99999999999", "1 "}) {
            EXPECT_EQ(parsePosition(table, text, format).error, MciError::badInteger)
                << text << " " << nameOf(format);
        }
    }
    EXPECT_EQ(parsePosition(table, "0:1", ms).error, MciError::badInteger);
    EXPECT_EQ(parsePosition(table, "0:0:0:0", msf).error, MciError::badInteger);
}

} // namespace
} // namespace sonarith::mci
