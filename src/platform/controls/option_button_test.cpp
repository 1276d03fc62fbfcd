// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/option_button.h"

#include <gtest/gtest.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

struct OptionButtonTest : testing::Test {
    Form form{"Form4"};
    OptionGroup group;
    OptionButton mute{form, group, "Option13", "Mute"};
    OptionButton unmute{form, group, "Option14"};
    OptionGroup otherGroup;
    OptionButton other{form, otherGroup, "Option2"};
    int clicks = 0;

    OptionButtonTest() {
        mute.onClick = [this] {
            ++clicks;
        };
    }
};

TEST_F(OptionButtonTest, ChoosingAButtonDeselectsOnlyTheOtherButtonsOfItsGroup) {
    unmute.setSelected(true);
    other.setSelected(true);
    mute.choose();
    EXPECT_TRUE(mute.selected());
    EXPECT_FALSE(unmute.selected());
    EXPECT_TRUE(other.selected());
    EXPECT_EQ(clicks, 1);
}

TEST_F(OptionButtonTest, ChoosingTheSelectedButtonRunsTheHandlerAgain) {
    mute.choose();
    mute.choose();
    EXPECT_EQ(clicks, 2);
}

TEST_F(OptionButtonTest, SelectionByCodeRunsNoHandler) {
    mute.setSelected(true);
    EXPECT_EQ(clicks, 0);
}

TEST_F(OptionButtonTest, CodeMayDeselectTheSelectedButton) {
    mute.setSelected(true);
    mute.setSelected(false);
    EXPECT_FALSE(mute.selected());
    EXPECT_FALSE(unmute.selected());
}

TEST_F(OptionButtonTest, AClickByCodeRunsTheHandlerAndSelectsNothing) {
    mute.click();
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(mute.selected());
}

} // namespace
} // namespace sonarith
