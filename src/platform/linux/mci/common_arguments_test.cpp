// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/common_arguments.h"

#include <gmock/gmock.h>

namespace sonarith::mci {
namespace {

constexpr Keyword lengthKeywords[] = {{"length"}, {"number of tracks"}, {"track", Takes::value}};

std::vector<Word> wordsOf(const char* text) {
    return parseCommand(std::string("status cd ") + text).value.words;
}

TEST(CommonArguments, ACommandWithoutKeywordsAcceptsWaitButNoUnknownWord) {
    EXPECT_EQ(parseNothing(wordsOf("")), MciError::none);
    EXPECT_EQ(parseNothing(wordsOf("wait")), MciError::none);
    EXPECT_EQ(parseNothing(wordsOf("now")), MciError::unrecognizedKeyword);
}

TEST(CommonArguments, MustIncludeAValidKeywordIfTheCommandNeedsAKeyword) {
    const auto some = parseSome(wordsOf("track 2 wait"), lengthKeywords);
    ASSERT_TRUE(some.ok());
    EXPECT_EQ(*some.value.value("track"), "2");
    EXPECT_EQ(parseSome(wordsOf("wait"), lengthKeywords).error, MciError::missingParameter);
    EXPECT_EQ(parseSome(wordsOf("track"), lengthKeywords).error, MciError::missingParameter);
    EXPECT_EQ(parseSome(wordsOf("sideways"), lengthKeywords).error, MciError::unrecognizedKeyword);
}

TEST(CommonArguments, ContainTheItemAndTheQualifiersOfAStatusCommand) {
    const auto question = parseQuestion(wordsOf("length track 3"), lengthKeywords);
    ASSERT_TRUE(question.ok());
    EXPECT_EQ(question.value.item, "length");
    EXPECT_EQ(*question.value.arguments.value("track"), "3");
    EXPECT_EQ(parseQuestion(wordsOf("track 3"), lengthKeywords).error, MciError::missingParameter);
    EXPECT_EQ(parseQuestion(wordsOf("length number of tracks"), lengthKeywords).error,
              MciError::flagsNotCompatible);
    EXPECT_EQ(parseQuestion(wordsOf("length sideways"), lengthKeywords).error,
              MciError::unrecognizedKeyword);
}

} // namespace
} // namespace sonarith::mci
