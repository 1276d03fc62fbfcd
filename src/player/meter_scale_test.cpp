// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/meter_scale.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TEST(BarTop, RisesFromTheBottomByOneTwipForEach20StepsOfTheLevel) {
    struct Row {
        int level;
        Twips top;
    };
    for (const Row& row : {Row{0, 915_twips}, Row{20, 914_twips}, Row{9000, 465_twips},
                           Row{18300, 0_twips}, Row{32768, Twips(-723)},
                           Row{INT32_MAX, Twips(-107373267)}, Row{INT32_MIN, Twips(107375097)}}) {
        EXPECT_EQ(barTop(915_twips, row.level), row.top) << "level " << row.level;
    }
}

TEST(TraceHeight, IsTheGivenDistanceForSilenceAnd2000TwipsLessForTheFullLevel) {
    EXPECT_EQ(traceHeight(0, 950), 950);
    EXPECT_EQ(traceHeight(16384, 950), -50);
    EXPECT_EQ(traceHeight(32768, 950), -1050);
    EXPECT_EQ(traceHeight(0, 150), 150);
    EXPECT_DOUBLE_EQ(traceHeight(1, 950), 950 - 2000.0 / 32768);
    // A negative level increases the distance. The lowest 32-bit number is an exception: it has no
    // opposite, so it decreases the distance.
    EXPECT_EQ(traceHeight(INT32_MIN, 950), -131072000.0 + 950);
}

TEST(Negated, IsTheOppositeExceptForTheLowestNumberWhichHasNone) {
    EXPECT_EQ(negated(5), -5);
    EXPECT_EQ(negated(-32768), 32768);
    EXPECT_EQ(negated(INT32_MIN), INT32_MIN);
    EXPECT_EQ(negated(INT32_MAX), -INT32_MAX);
}

} // namespace
} // namespace sonarith
