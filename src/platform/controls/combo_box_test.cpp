// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/combo_box.h"

#include <gtest/gtest.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

struct ComboBoxTest : testing::Test {
    Form form{"FrmPrefs"};
    ComboBox box{form, "Combo1"};
    int clicks = 0;

    ComboBoxTest() {
        box.addItem("Low");
        box.addItem("Normal");
        box.onClick = [this] {
            ++clicks;
        };
    }
};

TEST_F(ComboBoxTest, StartsWithNothingSelected) {
    EXPECT_EQ(box.listIndex(), -1);
    EXPECT_EQ(box.text(), "");
    EXPECT_EQ(box.list(1), "Normal");
    EXPECT_EQ(box.list(2), "");
    EXPECT_EQ(box.list(-1), "");
}

TEST_F(ComboBoxTest, CodeThatSelectsTheSameEntryTwiceRunsTheClickHandlerOnce) {
    EXPECT_TRUE(box.setListIndex(1).ok());
    EXPECT_TRUE(box.setListIndex(1).ok());
    EXPECT_EQ(box.text(), "Normal");
    EXPECT_EQ(clicks, 1);
}

TEST_F(ComboBoxTest, SelectingAnIndexOutsideTheListFailsAndChangesNothing) {
    box.setListIndex(1).passOver();
    for (const int outside : {-2, 2, 70000}) {
        EXPECT_EQ(box.setListIndex(outside).error().number, ErrorNumber::invalidPropertyValue);
    }
    EXPECT_EQ(box.listIndex(), 1);
    EXPECT_EQ(clicks, 1);
}

TEST_F(ComboBoxTest, ChoosingTheSelectedEntryRunsTheClickHandlerAgain) {
    box.choose(0);
    box.choose(0);
    EXPECT_EQ(clicks, 2);
    box.choose(5);
    EXPECT_EQ(clicks, 2);
    EXPECT_EQ(box.listIndex(), 0);
}

TEST_F(ComboBoxTest, ClearRemovesTheEntriesAndTheSelectionAndRunsNoHandler) {
    box.setListIndex(1).passOver();
    box.clear();
    EXPECT_EQ(box.listIndex(), -1);
    EXPECT_EQ(box.listCount(), 0);
    EXPECT_EQ(clicks, 1);
}

} // namespace
} // namespace sonarith
