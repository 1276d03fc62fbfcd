// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/unicode.h"

#include <gtest/gtest.h>

#include <array>

#include <utf8proc.h>

namespace sonarith {
namespace {

TEST(LowerCase, ChangesUpperCaseLettersOfAnyAlphabetAndNothingElse) {
    EXPECT_EQ(lowerCase("C:\\Music\\Track 1.WAV"), "c:\\music\\track 1.wav");
    EXPECT_EQ(lowerCase("ÄÖÜ ΑΒΓ ЖЩ"), "äöü αβγ жщ");
    EXPECT_EQ(lowerCase("日本 ß 123"), "日本 ß 123");
    EXPECT_EQ(lowerCase(""), "");
}

TEST(LowerCase, LeavesBytesThatAreNotUtf8Unchanged) {
    EXPECT_EQ(lowerCase("A\xffZ\xc3"), "a\xffz\xc3");
    // An encoded surrogate and an overlong slash are also not valid UTF-8.
    EXPECT_EQ(lowerCase("\xed\xa0\x80"
                        "A\xc0\xaf"),
              "\xed\xa0\x80"
              "a\xc0\xaf");
}

TEST(LowerCase, KeepsNulCharacters) {
    EXPECT_EQ(lowerCase(std::string_view("A\0B", 3)), std::string("a\0b", 3));
}

TEST(EqualIgnoringCase, FollowsFullCaseFolding) {
    EXPECT_TRUE(equalIgnoringCase("Straße", "STRASSE"));
    EXPECT_TRUE(equalIgnoringCase("ΣΊΣΥΦΟΣ", "σίσυφος"));
    EXPECT_FALSE(equalIgnoringCase("a", "ä"));
    EXPECT_FALSE(equalIgnoringCase("track", "track "));
}

TEST(EqualIgnoringCase, DistinguishesStrayBytes) {
    EXPECT_TRUE(equalIgnoringCase("A\xff", "a\xff"));
    EXPECT_FALSE(equalIgnoringCase("A\xff", "a\xfe"));
    EXPECT_FALSE(equalIgnoringCase("\xe9", "é"));
}

TEST(EqualIgnoringCase, IsTrueForEveryCharacterAndItsLowerCase) {
    for (utf8proc_int32_t codePoint = 1; codePoint <= 0x10ffff; ++codePoint) {
        if (!utf8proc_codepoint_valid(codePoint)) {
            continue;
        }
        std::array<utf8proc_uint8_t, 4> bytes{};
        const auto length = utf8proc_encode_char(codePoint, bytes.data());
        const std::string text(reinterpret_cast<const char*>(bytes.data()),
                               static_cast<std::size_t>(length));
        ASSERT_TRUE(equalIgnoringCase(text, lowerCase(text))) << std::hex << codePoint;
    }
}

TEST(CharacterBytes, IsTheLengthOfAWellFormedCharacterAtTheStart) {
    EXPECT_EQ(characterBytes("az"), 1U);
    EXPECT_EQ(characterBytes("äz"), 2U);
    EXPECT_EQ(characterBytes("日本"), 3U);
    EXPECT_EQ(characterBytes("\xf4\x8f\xbf\xbfz"), 4U);
    EXPECT_EQ(characterBytes(std::string_view("\0z", 2)), 1U);
    EXPECT_EQ(characterBytes(""), 0U);
}

TEST(CharacterBytes, IsZeroWithoutAWellFormedCharacterAtTheStart) {
    for (const char* text :
         {"\x80", "\xff", "\xc3", "\xc3z", "\xc0\xaf", "\xe0\x9f\xbf", "\xe6\x97", "\xed\xa0\x80",
          "\xf0\x8f\xbf\xbf", "\xf4\x90\x80\x80", "\xf5\x80\x80\x80"}) {
        EXPECT_EQ(characterBytes(text), 0U) << text;
    }
}

TEST(Characters, AreCountedAndSplitByCodePointNotByByte) {
    EXPECT_EQ(characterCount("añ日"), 3U);
    EXPECT_EQ(leftCharacters("añ日b", 2), "añ");
    EXPECT_EQ(midCharacters("añ日b", 2, 2), "ñ日");
}

TEST(Characters, IncludeEachStrayByteAsOneCharacter) {
    EXPECT_EQ(characterCount("\xff\xfe"
                             "a"),
              3U);
    EXPECT_EQ(midCharacters("a\xff.wav", 2, 5), "\xff.wav");
    EXPECT_NE(charactersOf("\xff"), charactersOf("\xfe"));
}

TEST(Characters, BeyondTheEndOfTheTextAreOmitted) {
    EXPECT_EQ(leftCharacters("ab", 9), "ab");
    EXPECT_EQ(midCharacters("ab", 2, 9), "b");
    EXPECT_EQ(midCharacters("ab", 5, 1), "");
}

TEST(IsValidUtf8, IsFalseForIncompleteCharactersAndStrayBytes) {
    EXPECT_TRUE(isValidUtf8("añ日\n"));
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_FALSE(isValidUtf8("a\xc3"));
    EXPECT_FALSE(isValidUtf8("\x80"));
}

} // namespace
} // namespace sonarith
