// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/toc_tokens.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

std::vector<std::string> textsOf(std::string_view text) {
    std::vector<std::string> texts;
    const auto tokens = tocTokens("a.toc", text);
    EXPECT_TRUE(tokens.ok());
    for (const TocToken& token : tokens.value()) {
        texts.emplace_back(token.text);
    }
    return texts;
}

TEST(TocTokens, AreWordsStringsAndBraces) {
    EXPECT_THAT(textsOf("FILE \"a b.wav\"0{TITLE\"x\"}"),
                ElementsAre("FILE", "a b.wav", "0", "{", "TITLE", "x", "}", ""));
}

TEST(TocTokens, HaveTheirLineNumbers) {
    const auto tokens = tocTokens("a.toc", "one\r\n// two\n\nthree // four\n");
    ASSERT_TRUE(tokens.ok());
    ASSERT_EQ(tokens.value().size(), 3U);
    EXPECT_EQ(tokens.value()[0].line, 1);
    EXPECT_EQ(tokens.value()[1].text, "three");
    EXPECT_EQ(tokens.value()[1].line, 4);
    EXPECT_EQ(tokens.value()[2].kind, TocTokenKind::end);
}

TEST(TocTokens, StringsMayContainBracesSlashesAndEscapedQuotationMarks) {
    EXPECT_THAT(textsOf("\"a{b}//\\\"c\\\\\" x"), ElementsAre("a{b}//\\\"c\\\\", "x", ""));
}

TEST(TocTokens, AStringMustEndOnItsLine) {
    EXPECT_THAT(tocTokens("a.toc", "x\n\"abc\n\"").error().text, StartsWith("a.toc, line 2: "));
    EXPECT_FALSE(tocTokens("a.toc", "\"abc\\\"").ok());
}

TEST(Unescaped, DecodesEscapedQuotationMarksEscapedBackslashesAndOctalBytes) {
    EXPECT_EQ(unescaped("a\\\"b\\\\c"), "a\"b\\c");
    EXPECT_EQ(unescaped("\\303\\244"), "ä");
    EXPECT_EQ(unescaped("\\12x\\"), "12x\\");
}

} // namespace
} // namespace sonarith::disc
