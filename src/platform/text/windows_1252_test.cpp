// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/windows_1252.h"

#include <gtest/gtest.h>

#include "platform/text/unicode.h"

namespace sonarith {
namespace {

std::string allBytes() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

TEST(Windows1252, EveryByteBecomesOneCharacterAndSurvivesTheRoundTrip) {
    const std::string text = textOfWindows1252(allBytes());
    EXPECT_TRUE(isValidUtf8(text));
    EXPECT_EQ(characterCount(text), 256U);
    EXPECT_EQ(windows1252Of(text), allBytes());
    for (const char byte : allBytes()) {
        const std::string one(1, byte);
        EXPECT_EQ(windows1252Of(textOfWindows1252(one)), one);
    }
}

TEST(Windows1252, DiffersFromUnicodeOnlyBetween80And9F) {
    EXPECT_EQ(textOfWindows1252("\x80\x8a\x8c\x92\x9f"), "€ŠŒ’Ÿ");
    EXPECT_EQ(windows1252Of("€ŠŒ’Ÿ"), "\x80\x8a\x8c\x92\x9f");
    EXPECT_EQ(textOfWindows1252("Z\xfcrich \xff\xa0"), "Zürich ÿ\xc2\xa0");
}

TEST(Windows1252, PreservesTheFiveUndefinedBytes) {
    EXPECT_EQ(textOfWindows1252("\x81\x8d\x8f\x90\x9d"),
              "\xc2\x81\xc2\x8d\xc2\x8f\xc2\x90\xc2\x9d");
    EXPECT_EQ(windows1252Of("\xc2\x81\xc2\x8d\xc2\x8f\xc2\x90\xc2\x9d"), "\x81\x8d\x8f\x90\x9d");
    // The code page does not contain the other control characters from U+0080 to U+009F.
    EXPECT_EQ(windows1252Of("\xc2\x80\xc2\x9f"), "??");
}

TEST(Windows1252, WritesAQuestionMarkForEachUnknownCharacterAndEachInvalidByte) {
    EXPECT_EQ(windows1252Of("a\xc5\x82\xe4\xb8\xad\xf0\x9f\x8e\xb5z"), "a???z");
    EXPECT_EQ(windows1252Of("\xff\xc3q\xe4\xb8"), "??q??");
    EXPECT_EQ(windows1252Of(""), "");
    // The composed normal form (NFC) of this character has two characters; the character itself
    // becomes one "?".
    EXPECT_EQ(windows1252Of("a\xe0\xa5\x98z"), "a?z");
}

TEST(Windows1252, ComposesALetterAndTheAccentsDirectlyAfterIt) {
    EXPECT_EQ(windows1252Of("caf"
                            "e\xcc\x81 Zu\xcc\x88rich S\xcc\x8c A\xcc\x8a"),
              "caf\xe9 Z\xfcrich \x8a \xc5");
    EXPECT_EQ(windows1252Of("\xe2\x84\xab"), "\xc5"); // the angstrom sign
    // An accent without a letter, and an accent after a letter that has no such accented form,
    // become "?".
    EXPECT_EQ(windows1252Of("\xcc\x81"
                            "b\xcc\x81"),
              "?b?");
    // A byte that is not UTF-8 separates the letter from the accent.
    EXPECT_EQ(windows1252Of("e\xff\xcc\x81"), "e??");
}

} // namespace
} // namespace sonarith
