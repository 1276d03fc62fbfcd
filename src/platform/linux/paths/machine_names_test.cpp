// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/machine_names.h"

#include <gtest/gtest.h>

#include "platform/text/wildcard.h"

namespace sonarith {
namespace {

TEST(MachineName, MapsWhatNoNameOfTheLogicHoldsAndNothingElse) {
    EXPECT_EQ(logicName("a\\b:c"), "a\xef\x81\x9c"
                                   "b\xef\x80\xba"
                                   "c");
    EXPECT_EQ(logicName("what?*"), "what\xef\x80\xbf\xef\x80\xaa");
    EXPECT_EQ(machineName(logicName("a\\b:c*?d")), "a\\b:c*?d");
    EXPECT_EQ(logicName("plain \xff\xfe#[x]!"), "plain \xff\xfe#[x]!");
}

TEST(MachineName, IsNoPatternForItsNeighbours) {
    EXPECT_TRUE(matches("whats.mp3", "what?.mp3"));
    EXPECT_FALSE(matches("whats.mp3", logicName("what?.mp3")));
    EXPECT_FALSE(matches("anything.mp3", logicName("*.mp3")));
    EXPECT_TRUE(matches(logicName("what?*.mp3"), logicName("what?*.mp3")));
}

} // namespace
} // namespace sonarith
