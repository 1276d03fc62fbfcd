// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/sheet_text.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(SheetLines, EndWithLineFeedCarriageReturnOrBoth) {
    EXPECT_THAT(linesOf("a.cue", "one\ntwo\r\nthree\rfour").value(),
                ElementsAre("one", "two", "three", "four"));
}

TEST(SheetLines, IncludeEmptyLinesSoThatLineNumbersAreRight) {
    EXPECT_THAT(linesOf("a.cue", "\r\n\r\nx\n\n").value(), ElementsAre("", "", "x", ""));
}

TEST(SheetLines, DoNotContainTheByteOrderMark) {
    EXPECT_THAT(linesOf("a.cue", "\xEF\xBB\xBFREM\n").value(), ElementsAre("REM"));
    EXPECT_THAT(linesOf("a.cue", "").value(), IsEmpty());
}

TEST(SheetLines, HaveAtMostMaxLineBytes) {
    EXPECT_TRUE(linesOf("a.cue", std::string(maxLineBytes, 'x')).ok());
    const auto tooLong = linesOf("a.cue", "REM\n" + std::string(maxLineBytes + 1, 'x'));
    ASSERT_FALSE(tooLong.ok());
    EXPECT_THAT(tooLong.error().text, HasSubstr("a.cue, line 2: the line is longer"));
}

TEST(SheetLines, AreRefusedInATextThatIsTooLong) {
    EXPECT_TRUE(linesOf("a.cue", std::string(maxSheetBytes, '\n')).ok());
    EXPECT_THAT(linesOf("a.cue", std::string(maxSheetBytes + 1, '\n')).error().text,
                HasSubstr("longer than 1 MiB"));
}

TEST(SheetLines, AreRefusedIfOneContainsANul) {
    EXPECT_EQ(linesOf("a.cue", std::string_view("REM\nT\0I", 7)).error().text,
              "a.cue, line 2: the line contains a NUL byte; save the sheet as UTF-8 text");
}

TEST(Words, AreTakenOneByOne) {
    std::string_view rest = "  TRACK\t 01  AUDIO ";
    EXPECT_EQ(takeWord(rest), "TRACK");
    EXPECT_EQ(takeWord(rest), "01");
    EXPECT_EQ(takeWord(rest), "AUDIO");
    EXPECT_EQ(takeWord(rest), "");
}

TEST(Words, AreComparedIgnoringCase) {
    EXPECT_TRUE(sameWord("TrAcK", "track"));
    EXPECT_FALSE(sameWord("TRACK", "TRACKS"));
    EXPECT_FALSE(sameWord("[", "{"));
}

TEST(Numbers, ConsistOfDigitsAndAreAtMostTheMaximum) {
    EXPECT_EQ(parseNumber("007", 99).value(), 7);
    EXPECT_EQ(parseNumber("99", 99).value(), 99);
    EXPECT_FALSE(parseNumber("100", 99).ok());
    EXPECT_FALSE(parseNumber("-1", 99).ok());
    EXPECT_FALSE(parseNumber("", 99).ok());
    EXPECT_FALSE(parseNumber("1x", 99).ok());
}

TEST(Numbers, ThatOverflowAreRefused) {
    EXPECT_THAT(parseNumber("99999999999999999999999", 99).error().text, HasSubstr("too large"));
}

TEST(Msf, IsConvertedToSectorsAndBack) {
    EXPECT_EQ(parseMsf("00:00:00").value(), 0);
    EXPECT_EQ(parseMsf("01:02:03").value(), (60 + 2) * 75 + 3);
    EXPECT_EQ(parseMsf("99:59:74").value(), maxDiscSectors - 1);
    EXPECT_EQ(msfText(parseMsf("12:34:56").value()), "12:34:56");
}

TEST(Msf, ReportsWhichPartIsOutOfRange) {
    EXPECT_THAT(parseMsf("100:00:00").error().text, HasSubstr("minutes go up to 99"));
    EXPECT_THAT(parseMsf("00:60:00").error().text, HasSubstr("seconds go up to 59"));
    EXPECT_THAT(parseMsf("00:00:75").error().text, HasSubstr("frames go up to 74"));
    EXPECT_THAT(parseMsf("00:00:99999999999999999999").error().text, HasSubstr("frames"));
}

TEST(Msf, MustConsistOfMinutesSecondsAndFrames) {
    for (const char* text : {"", "1", "00:00", "00:00:", ":00:00", "00:00:00:00", "0-:00:00",
                             "-1:00:00", "00:00:00x", "00.00.00"}) {
        const auto time = parseMsf(text);
        ASSERT_FALSE(time.ok()) << text;
        EXPECT_THAT(time.error().text, HasSubstr("mm:ss:ff")) << text;
    }
}

TEST(ImageNames, MayLeadToFilesInTheSheetsFolderOrBelowIt) {
    for (const char* name :
         {"a.bin", "sub/a.bin", "sub\\a.bin", "..a.bin", "a..", "./a.bin", "ä"}) {
        EXPECT_TRUE(checkImageName(name).ok()) << name;
    }
}

TEST(ImageNames, MayHaveAColonThatDoesNotFollowADriveLetter) {
    EXPECT_TRUE(checkImageName("1: intro.wav").ok());
    EXPECT_TRUE(checkImageName("ab:c.wav").ok());
}

TEST(ImageNames, MustNotBeEmptyOrAbsoluteAndMustContainNoNulAndNoDotDotFolder) {
    for (const char* name : {"", "..", "../a.bin", "sub/../../a", "sub\\..\\a", "/etc/passwd",
                             "\\\\server\\a", "C:\\a.bin", "c:a.bin", "a/.."}) {
        EXPECT_FALSE(checkImageName(name).ok()) << name;
    }
    EXPECT_FALSE(checkImageName(std::string_view("a\0b", 3)).ok());
}

TEST(ShownText, IsQuotedTruncatedAndSafeToDisplay) {
    EXPECT_EQ(shown("Größe 音"), "\"Größe 音\"");
    EXPECT_EQ(shown("a\tb\x1b[31m\x7f"), "\"a?b?[31m?\"");
    EXPECT_EQ(shown("\xff\xc3"), "\"??\"");
    EXPECT_EQ(shown("\xed\xa0\x80"), "\"???\"") << "half of a surrogate pair must not be shown";
    EXPECT_EQ(shown(std::string(5000, 'x')), "\"" + std::string(100, 'x') + "...\"");
}

TEST(FileIndex, RecognisesAFileByItsNameAndFormat) {
    std::vector<LayoutFile> files;
    EXPECT_EQ(fileIndex(files, {"a", ImageFormat::wave, 1}).value(), 0U);
    EXPECT_EQ(fileIndex(files, {"b", ImageFormat::wave, 2}).value(), 1U);
    EXPECT_EQ(fileIndex(files, {"a", ImageFormat::wave, 3}).value(), 0U);
    EXPECT_EQ(fileIndex(files, {"a", ImageFormat::bigEndian, 4}).value(), 2U);
    EXPECT_EQ(files.size(), 3U);
}

TEST(FileIndex, RefusesMoreFilesThanAnImageMayHave) {
    std::vector<LayoutFile> files;
    for (std::size_t i = 0; i < maxImageFiles; ++i) {
        ASSERT_TRUE(fileIndex(files, {std::to_string(i), ImageFormat::wave, 1}).ok());
    }
    EXPECT_THAT(fileIndex(files, {"one more", ImageFormat::wave, 1}).error().text,
                HasSubstr("more than 198 files"));
}

} // namespace
} // namespace sonarith::disc
