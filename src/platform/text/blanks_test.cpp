// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/blanks.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TEST(Blanks, CanBeRemovedAtBothEndsOrOnlyAtTheEndOfAText) {
    EXPECT_EQ(withoutBlanksAround("  a b  "), "a b");
    EXPECT_EQ(withoutBlanksBehind("  a b  "), "  a b");
    EXPECT_EQ(withoutBlanksAround("ab"), "ab");
    EXPECT_EQ(withoutBlanksBehind("ab"), "ab");
    for (const char* nothing : {"", " ", "   "}) {
        EXPECT_EQ(withoutBlanksAround(nothing), "");
        EXPECT_EQ(withoutBlanksBehind(nothing), "");
        EXPECT_TRUE(holdsOnlyBlanks(nothing));
    }
    EXPECT_FALSE(holdsOnlyBlanks(" a "));
}

TEST(Blanks, DoNotIncludeOtherInvisibleCharacters) {
    using namespace std::string_literals;
    for (const std::string& other : {"\t"s, "\n"s, "\0"s, "\xc2\xa0"s}) {
        EXPECT_FALSE(holdsOnlyBlanks(other));
        EXPECT_EQ(withoutBlanksAround(" " + other + " "), other);
        EXPECT_EQ(withoutBlanksBehind(other + " "), other);
    }
}

} // namespace
} // namespace sonarith
