// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/machine_names.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

#include "platform/text/unicode.h"
#include "platform/text/wildcard.h"

namespace sonarith {
namespace {

TEST(LogicName, ReplacesOnlyBackslashesColonsStarsAndQuestionMarks) {
    EXPECT_EQ(logicName("a\\b:c"), "a\u2216b\u02d0c");
    EXPECT_EQ(logicName("what?*"), "what\u0294\u2217");
    EXPECT_EQ(machineName(logicName("a\\b:c*?d")), "a\\b:c*?d");
    EXPECT_EQ(logicName("plain \xff\xfe#[x]!"), "plain \xff\xfe#[x]!");
}

// The mark is U+00AC. Replacements are the characters that logicName() and formerLogicName() put in
// place of others.
TEST(LogicName, PutsAMarkBeforeEachReplacementOrMarkThatIsAlreadyInTheMachineName) {
    EXPECT_EQ(logicName("a\u2217b"), "a\u00ac\u2217b");
    EXPECT_EQ(logicName("\uf02a"), "\u00ac\uf02a");
    EXPECT_EQ(logicName("not \u00ac"), "not \u00ac\u00ac");
    EXPECT_EQ(machineName("a\u00ac\u2217b"), "a\u2217b");
    EXPECT_EQ(machineName("\u00ac\u00ac\u2217"), "\u00ac*");
}

TEST(MachineName, KeepsAMarkThatPrecedesNeitherAReplacementNorAMark) {
    EXPECT_EQ(machineName("\u00acx"), "\u00acx");
    EXPECT_EQ(machineName("x\u00ac"), "x\u00ac");
}

TEST(MachineName, IsNoPatternForOtherFilesAfterLogicNameHasConvertedIt) {
    EXPECT_TRUE(matches("whats.mp3", "what?.mp3"));
    EXPECT_FALSE(matches("whats.mp3", logicName("what?.mp3")));
    EXPECT_FALSE(matches("anything.mp3", logicName("*.mp3")));
    EXPECT_TRUE(matches(logicName("what?*.mp3"), logicName("what?*.mp3")));
}

// Older versions of the program converted names as formerLogicName() does. The settings stores of
// these versions contain such names.
TEST(MachineName, IsAlsoRestoredFromAFormerLogicName) {
    EXPECT_EQ(formerLogicName("a\\b:c*?d"), "a\uf05c"
                                            "b\uf03a"
                                            "c\uf02a\uf03f"
                                            "d");
    EXPECT_EQ(machineName(formerLogicName("a\\b:c*?d")), "a\\b:c*?d");
    EXPECT_EQ(formerLogicName("\u2217\u00ac\uf02a"), "\u2217\u00ac\uf02a");
}

TEST(MayBeFormer, IsTrueOnlyForNamesWithReplacementsOrMarks) {
    EXPECT_FALSE(mayBeFormer("plain \xff\xe2\x88 name"));
    EXPECT_TRUE(mayBeFormer("x\uf02a"));
    EXPECT_TRUE(mayBeFormer("x\u00ac"));
    EXPECT_TRUE(mayBeFormer("x\u2217y"));
}

/// A random name. It consists of pieces of five kinds: the characters that logicName() replaces;
/// the replacements; the mark; parts of the UTF-8 sequences of replacements and of the mark; other
/// characters and bytes.
std::string randomName(std::mt19937& random) {
    static const std::array<std::string, 28> pieces = {
        "\\",     ":",      "*",      "?",      "\u2216", "\u02d0", "\u2217",
        "\u0294", "\u00ac", "\uf05c", "\uf03a", "\uf02a", "\uf03f", "\xe2",
        "\x88",   "\x97",   "\xca",   "\x94",   "\xc2",   "\xac",   "\xef\x80",
        "\xaa",   "A",      "z",      "\u0130", "\u00df", "\u0241", "\xff"};
    std::string name;
    for (std::size_t left = random() % 12; left > 0; --left) {
        name += pieces[random() % pieces.size()];
    }
    return name;
}

constexpr int randomNames = 50'000;

TEST(MachineName, IsRestoredFromItsLogicName) {
    std::mt19937 random(1); // the same names in each run
    for (int i = 0; i < randomNames; ++i) {
        const std::string name = randomName(random);
        const std::string logic = logicName(name);
        ASSERT_EQ(logic.find_first_of("\\:*?"), std::string::npos) << logic;
        ASSERT_EQ(machineName(logic), name) << logic;
    }
}

TEST(MachineName, IsRestoredInLowerCaseFromItsLowerCasedLogicName) {
    std::mt19937 random(2);
    for (int i = 0; i < randomNames; ++i) {
        const std::string name = randomName(random);
        ASSERT_EQ(machineName(lowerCase(logicName(name))), lowerCase(name)) << name;
        ASSERT_EQ(caseFolded(logicName(name)), caseFolded(lowerCase(logicName(name)))) << name;
    }
}

TEST(MachineName, WithoutReplacementsAndMarksIsRestoredFromItsFormerLogicName) {
    std::mt19937 random(3);
    int plain = 0;
    for (int i = 0; i < randomNames; ++i) {
        const std::string name = randomName(random);
        if (!mayBeFormer(name)) {
            ++plain;
            ASSERT_EQ(machineName(formerLogicName(name)), name) << name;
        }
    }
    EXPECT_GT(plain, randomNames / 20);
}

} // namespace
} // namespace sonarith
