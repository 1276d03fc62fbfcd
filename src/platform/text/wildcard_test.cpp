// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/wildcard.h"

#include <gtest/gtest.h>

#include <string>

namespace sonarith {
namespace {

TEST(Matches, ComparesPlainTextExactlyAndCaseSensitively) {
    EXPECT_TRUE(matches("Track", "Track"));
    EXPECT_FALSE(matches("track", "Track"));
    EXPECT_FALSE(matches("Track ", "Track"));
    EXPECT_TRUE(matches("", ""));
    EXPECT_FALSE(matches("a", ""));
    EXPECT_FALSE(matches("", "a"));
}

TEST(Matches, AStarMatchesAnyCharactersOrNone) {
    EXPECT_TRUE(matches("", "*"));
    EXPECT_TRUE(matches("name.wav", "*.wav"));
    EXPECT_TRUE(matches("a.wav.wav", "a*.wav"));
    EXPECT_TRUE(matches("abcabd", "*abd"));
    EXPECT_TRUE(matches("abc", "a**c*"));
    EXPECT_FALSE(matches("name.mp3", "*.wav"));
}

TEST(Matches, AQuestionMarkMatchesOneCharacterOfAnyByteLength) {
    EXPECT_TRUE(matches("a", "?"));
    EXPECT_TRUE(matches("日", "?"));
    EXPECT_TRUE(matches("\xff", "?"));
    EXPECT_FALSE(matches("", "?"));
    EXPECT_FALSE(matches("日", "??"));
    EXPECT_TRUE(matches("\xff\xfe", "??"));
}

TEST(Matches, ANumberSignMatchesOneDigit) {
    EXPECT_TRUE(matches("Track 7", "Track #"));
    EXPECT_FALSE(matches("Track x", "Track #"));
    EXPECT_FALSE(matches("Track 12", "Track #"));
    EXPECT_FALSE(matches("٣", "#"));
}

TEST(Matches, AListMatchesExactlyOneOfItsCharacters) {
    EXPECT_TRUE(matches("b", "[abc]"));
    EXPECT_TRUE(matches("q", "[a-z]"));
    EXPECT_TRUE(matches("5", "[a-c0-9x]"));
    EXPECT_TRUE(matches("ж", "[а-я]"));
    EXPECT_FALSE(matches("Q", "[a-z]"));
    EXPECT_FALSE(matches("ab", "[ab]"));
    EXPECT_FALSE(matches("", "[ab]"));
}

TEST(Matches, ANegatedListMatchesOneCharacterThatIsNotInTheList) {
    EXPECT_TRUE(matches("d", "[!abc]"));
    EXPECT_FALSE(matches("b", "[!a-c]"));
    EXPECT_FALSE(matches("", "[!a]"));
}

TEST(Matches, SpecialCharactersInAListAndABracketThatClosesNoListStandForThemselves) {
    EXPECT_TRUE(matches("*", "[*]"));
    EXPECT_FALSE(matches("a", "[*]"));
    EXPECT_TRUE(matches("?", "[?]"));
    EXPECT_TRUE(matches("#", "[#]"));
    EXPECT_TRUE(matches("[", "[[]"));
    EXPECT_TRUE(matches("]", "]"));
}

TEST(Matches, AHyphenFirstOrLastInAListStandsForItself) {
    EXPECT_TRUE(matches("-", "[-a]"));
    EXPECT_TRUE(matches("-", "[a-]"));
    EXPECT_TRUE(matches("-", "[-]"));
    EXPECT_FALSE(matches("-", "[!-a]"));
    EXPECT_FALSE(matches("b", "[-a]"));
    EXPECT_TRUE(matches("a", "[--a]"));
    EXPECT_FALSE(matches("A", "[--a]"));
}

TEST(Matches, AnExclamationMarkThatNegatesNoListStandsForItself) {
    EXPECT_TRUE(matches("!", "!"));
    EXPECT_TRUE(matches("!", "[a!]"));
    EXPECT_TRUE(matches("!", "[!]"));
    EXPECT_FALSE(matches("a", "[!]"));
}

TEST(Matches, AnEmptyListMatchesTheEmptyText) {
    EXPECT_TRUE(matches("", "[]"));
    EXPECT_TRUE(matches("ab", "a[]b"));
    EXPECT_FALSE(matches("a", "[]"));
}

TEST(Matches, APatternWithAnUnclosedListMatchesNoText) {
    EXPECT_FALSE(matches("[", "["));
    EXPECT_FALSE(matches("a", "[a"));
    EXPECT_FALSE(matches("", "*["));
    EXPECT_FALSE(matches("song [live", "song [live"));
}

TEST(Matches, APatternWithAReversedRangeMatchesNoText) {
    EXPECT_FALSE(matches("b", "[z-a]"));
    EXPECT_FALSE(matches("b", "[!z-a]"));
}

TEST(Matches, AnInvalidUtf8ByteInThePatternMatchesOnlyItself) {
    EXPECT_TRUE(matches("a\xe9", "a\xe9"));
    EXPECT_FALSE(matches("a\xe9", "aé"));
    EXPECT_FALSE(matches("a\xe9", "a\xe8"));
}

// With exponential backtracking this test would never finish.
TEST(Matches, FinishesQuicklyOnHostilePatterns) {
    const std::string text(3000, 'a');
    std::string pattern;
    for (int i = 0; i < 500; ++i) {
        pattern += "*a";
    }
    EXPECT_TRUE(matches(text, pattern));
    EXPECT_FALSE(matches(text, pattern + "b"));
}

} // namespace
} // namespace sonarith
