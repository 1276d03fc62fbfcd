// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/cut_at_null.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TEST(CutAtNull, ReturnsTheTextBeforeTheFirstNul) {
    EXPECT_EQ(CutAtNull(std::string_view("12\0 34\0", 7)), "12");
}

TEST(CutAtNull, ReturnsAnEmptyTextIfThereIsNoNul) {
    EXPECT_EQ(CutAtNull("12"), "");
    EXPECT_EQ(CutAtNull(""), "");
}

TEST(CutAtNull, ReturnsAnEmptyTextForALeadingNul) {
    EXPECT_EQ(CutAtNull(std::string_view("\0abc", 4)), "");
}

} // namespace
} // namespace sonarith
