// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/disc_replies.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TEST(IsTrueText, AcceptsOnlyTheWordTrueInAnyLetterCaseAndNumbersOtherThanZero) {
    for (const char* reply : {"true", "True", "TRUE", "1", "-1", " 2 "}) {
        EXPECT_TRUE(isTrueText(reply)) << reply;
    }
    for (const char* reply : {"false", "False", "0", "", " ", "yes", "true!", "not ready"}) {
        EXPECT_FALSE(isTrueText(reply)) << reply;
    }
}

TEST(ReadTrackCount, ReadsTheFirstTwoCharacters) {
    struct Row {
        const char* reply;
        int count;
    };
    for (const Row& row : {Row{"1", 1}, Row{"12", 12}, Row{"99", 99}, Row{"100", 10}, Row{"07", 7},
                           Row{" 7", 7}, Row{"0", 0}}) {
        DiscState disc;
        disc.NumTracks = 5;
        readTrackCount(row.reply, disc);
        EXPECT_EQ(disc.NumTracks, row.count) << row.reply;
    }
}

TEST(ReadTrackCount, KeepsTheCountIfTheFirstTwoCharactersAreNoNumber) {
    for (const char* reply : {"", "x", "1x", "no tracks"}) {
        DiscState disc;
        disc.NumTracks = 5;
        readTrackCount(reply, disc);
        EXPECT_EQ(disc.NumTracks, 5) << reply;
    }
}

TEST(ReadPosition, ReadsTrackMinuteAndSecondAtTheirOffsets) {
    DiscState disc;
    readPosition("03:01:05:74", disc);
    EXPECT_EQ(disc.CurTrack, 3);
    EXPECT_EQ(disc.CurMin, 1);
    EXPECT_EQ(disc.CurSec, 5);
    readPosition("99:79:59:00", disc);
    EXPECT_EQ(disc.CurTrack, 99);
    EXPECT_EQ(disc.CurMin, 79);
    EXPECT_EQ(disc.CurSec, 59);
}

TEST(ReadPosition, ReadsDecimalNumbers) {
    // A wrong base, such as base 8 after a leading zero, changes only some numbers, so all are
    // tested.
    for (int number = 0; number < 100; ++number) {
        const std::string digits = (number < 10 ? "0" : "") + std::to_string(number);
        DiscState disc;
        readPosition(digits + ":" + digits + ":" + digits + ":00", disc);
        EXPECT_EQ(disc.CurTrack, number);
        EXPECT_EQ(disc.CurMin, number);
        EXPECT_EQ(disc.CurSec, number);
    }
}

TEST(ReadPosition, APartThatIsNoNumberKeepsItsOldValue) {
    struct Row {
        const char* reply;
        int track;
        int minute;
        int second;
    };
    for (const Row& row :
         {Row{"", 7, 8, 9}, Row{"garbage", 7, 8, 9}, Row{"03", 3, 8, 9}, Row{"03:", 3, 8, 9},
          Row{"03:01", 3, 1, 9}, Row{"03:01:", 3, 1, 9}, Row{"xx:01:yy:00", 7, 1, 9},
          Row{"3:01:05:00", 7, 8, 9}, Row{"03:01:5", 3, 1, 5}, Row{":::::::", 7, 8, 9}}) {
        SCOPED_TRACE(row.reply);
        DiscState disc;
        disc.CurTrack = 7;
        disc.CurMin = 8;
        disc.CurSec = 9;
        readPosition(row.reply, disc);
        EXPECT_EQ(disc.CurTrack, row.track);
        EXPECT_EQ(disc.CurMin, row.minute);
        EXPECT_EQ(disc.CurSec, row.second);
    }
}

TEST(PositionText, ShowsEachNumberWithAtLeastTwoDigits) {
    struct Row {
        int track;
        int minute;
        int second;
        const char* text;
    };
    for (const Row& row : {Row{3, 1, 5, "[03] 01:05"}, Row{0, 0, 0, "[00] 00:00"},
                           Row{99, 79, 59, "[99] 79:59"}, Row{100, 120, 7, "[100] 120:07"},
                           Row{-5, 0, 0, "[-05] 00:00"}, Row{-32768, 0, 0, "[-32768] 00:00"}}) {
        DiscState disc;
        disc.CurTrack = static_cast<std::int16_t>(row.track);
        disc.CurMin = static_cast<std::int16_t>(row.minute);
        disc.CurSec = static_cast<std::int16_t>(row.second);
        EXPECT_EQ(positionText(disc), row.text);
    }
}

} // namespace
} // namespace sonarith
