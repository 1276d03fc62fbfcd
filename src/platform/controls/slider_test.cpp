// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/slider.h"

#include <gtest/gtest.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

struct SliderTest : testing::Test {
    Form form{"Form4"};
    Slider slider{form, "Slider1", 0, 65535};
    int moves = 0;

    SliderTest() {
        slider.onScroll = [this] {
            ++moves;
        };
    }
};

TEST_F(SliderTest, AChangeFromCodeRunsNoHandler) {
    EXPECT_TRUE(slider.setValue(65535).ok());
    EXPECT_EQ(slider.value(), 65535);
    EXPECT_EQ(moves, 0);
}

TEST_F(SliderTest, CodeCannotSetAValueOutsideTheRange) {
    EXPECT_TRUE(slider.setValue(7).ok());
    for (const std::int64_t outside : {std::int64_t{-1}, std::int64_t{65536}, INT64_MAX}) {
        EXPECT_EQ(slider.setValue(outside).error().number, ErrorNumber::invalidPropertyValue);
    }
    EXPECT_EQ(slider.value(), 7);
}

TEST_F(SliderTest, AUsersMoveIsLimitedToTheRange) {
    slider.moveTo(70000);
    EXPECT_EQ(slider.value(), 65535);
    slider.moveTo(-5);
    EXPECT_EQ(slider.value(), 0);
    EXPECT_EQ(moves, 2);
}

TEST_F(SliderTest, AMoveToTheCurrentValueRunsNoHandler) {
    slider.moveTo(0);
    EXPECT_EQ(moves, 0);
}

} // namespace
} // namespace sonarith
