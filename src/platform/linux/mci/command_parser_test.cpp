// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/command_parser.h"

#include <gmock/gmock.h>

namespace sonarith::mci {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> wordsOf(const Command& command) {
    std::vector<std::string> texts;
    for (const Word& word : command.words) {
        texts.push_back(word.text);
    }
    return texts;
}

MciError errorOf(std::string_view text) {
    return parseCommand(text).error;
}

TEST(ACommand, HasAVerbADeviceAndParameters) {
    const auto command = parseCommand("status cd length track 3");
    ASSERT_TRUE(command.ok());
    EXPECT_EQ(command.value.verb, Verb::status);
    EXPECT_EQ(command.value.device, "cd");
    EXPECT_THAT(wordsOf(command.value), ElementsAre("length", "track", "3"));
    EXPECT_THAT(command.value.path, IsEmpty());
}

TEST(ACommand, MayHaveAnyCaseAndAnyBlanks) {
    const auto command = parseCommand(" \t PLAY   Cd  From\t12 \r\n");
    ASSERT_TRUE(command.ok());
    EXPECT_EQ(command.value.verb, Verb::play);
    EXPECT_EQ(command.value.device, "cd");
    EXPECT_THAT(wordsOf(command.value), ElementsAre("From", "12"));
}

TEST(ACommand, EndsAtItsFirstNul) {
    const auto command = parseCommand("stop cd\0 from 3"s);
    ASSERT_TRUE(command.ok());
    EXPECT_THAT(wordsOf(command.value), IsEmpty());
}

TEST(ACommand, MayHaveItsDeviceAndItsParametersInQuotes) {
    const auto command = parseCommand(R"(open "new" type waveaudio alias "My Wave")");
    ASSERT_TRUE(command.ok());
    EXPECT_EQ(command.value.device, "new");
    EXPECT_THAT(wordsOf(command.value), ElementsAre("type", "waveaudio", "alias", "My Wave"));
    EXPECT_TRUE(command.value.words[3].quoted);
    EXPECT_FALSE(command.value.words[2].quoted);
}

TEST(ACommand, FailsIfItsVerbIsMissingOrUnknownOrItsDeviceIsMissing) {
    EXPECT_EQ(errorOf(""), MciError::missingCommandString);
    EXPECT_EQ(errorOf("  \t "), MciError::missingCommandString);
    EXPECT_EQ(errorOf("\0play cd"s), MciError::missingCommandString);
    EXPECT_EQ(errorOf("dance cd"), MciError::unrecognizedCommand);
    EXPECT_EQ(errorOf("playcd"), MciError::unrecognizedCommand);
    EXPECT_EQ(errorOf("play"), MciError::missingDeviceName);
    EXPECT_EQ(errorOf("play  "), MciError::missingDeviceName);
    EXPECT_EQ(errorOf("play \"\""), MciError::missingDeviceName);
}

TEST(ACommand, OtherThanSaveFailsIfAClosingQuoteIsMissingOrDirectlyFollowedByText) {
    EXPECT_EQ(errorOf("\"play cd"), MciError::noClosingQuote);
    EXPECT_EQ(errorOf("play \"cd"), MciError::noClosingQuote);
    EXPECT_EQ(errorOf("open cdaudio alias \""), MciError::noClosingQuote);
    EXPECT_EQ(errorOf("open \"cdaudio\"x alias cd"), MciError::extraCharacters);
    EXPECT_EQ(errorOf("open cdaudio alias \"a\"\"b\""), MciError::extraCharacters);
}

TEST(ACommand, IsRefusedIfItIsTooLong) {
    const std::string head = "save capture ";
    EXPECT_EQ(errorOf(head + std::string(maxCommandBytes - head.size(), 'x')), MciError::none);
    EXPECT_EQ(errorOf(head + std::string(maxCommandBytes - head.size() + 1, 'x')),
              MciError::commandTooLong);
    EXPECT_EQ(errorOf(std::string(100'000'000, ' ')), MciError::commandTooLong);
}

TEST(ACommand, HasTheTextAfterTheDeviceAsItsPathIfItsVerbIsSave) {
    const auto path = [](std::string_view text) {
        const auto command = parseCommand(text);
        EXPECT_TRUE(command.ok());
        EXPECT_THAT(wordsOf(command.value), IsEmpty());
        return command.value.path;
    };
    EXPECT_EQ(path(R"(save capture c:\my music\4711-3.wav)"), R"(c:\my music\4711-3.wav)");
    EXPECT_EQ(path(R"(SAVE Capture   C:\Music\A  b.WAV)"), R"(C:\Music\A  b.WAV)");
    EXPECT_EQ(path(R"(save capture "c:\my music\a.wav")"), R"(c:\my music\a.wav)");
    EXPECT_EQ(path(R"(save capture "c:\half)"), R"("c:\half)");
    EXPECT_EQ(path(R"(save capture c:\a"b" c.wav)"), R"(c:\a"b" c.wav)");
    EXPECT_EQ(path("save capture c:\\wait notify"), "c:\\wait notify");
    EXPECT_EQ(path("save capture \""), "\"");
    EXPECT_THAT(path("save capture"), IsEmpty());
    EXPECT_THAT(path("save capture  "), IsEmpty());
    EXPECT_THAT(path("save capture \"\""), IsEmpty());
}

constexpr Keyword keywords[] = {{"from", Takes::value},
                                {"to", Takes::value},
                                {"time"},
                                {"time format", Takes::value},
                                {"number of tracks"}};

Outcome<Arguments> argumentsOf(const std::string& words) {
    return parseArguments(parseCommand("play cd " + words).value.words, keywords);
}

TEST(Keywords, AreFoundWithTheirValuesInAnyOrderAndCase) {
    const auto arguments = argumentsOf("TO 9 From 3");
    ASSERT_TRUE(arguments.ok());
    EXPECT_EQ(*arguments.value.value("from"), "3");
    EXPECT_EQ(*arguments.value.value("to"), "9");
    EXPECT_EQ(arguments.value.value("time format"), nullptr);
    EXPECT_FALSE(arguments.value.empty());
}

TEST(Keywords, OfSeveralWordsTakePrecedenceOverShorterOnes) {
    const auto arguments = argumentsOf("time format tmsf number of Tracks");
    ASSERT_TRUE(arguments.ok());
    EXPECT_EQ(*arguments.value.value("time format"), "tmsf");
    EXPECT_TRUE(arguments.value.has("number of tracks"));
    EXPECT_FALSE(arguments.value.has("time"));
}

TEST(Keywords, WaitAndNotifyAreAcceptedAndIgnored) {
    const auto arguments = argumentsOf("wait from 3 notify wait");
    ASSERT_TRUE(arguments.ok());
    EXPECT_EQ(*arguments.value.value("from"), "3");
    EXPECT_FALSE(arguments.value.has("wait"));
    const auto alone = argumentsOf("wait");
    EXPECT_TRUE(alone.ok() && alone.value.empty());
}

TEST(Keywords, FailIfTheyAreUnknownIncompleteOrRepeated) {
    EXPECT_EQ(argumentsOf("sideways").error, MciError::unrecognizedKeyword);
    EXPECT_EQ(argumentsOf("number of").error, MciError::unrecognizedKeyword);
    EXPECT_EQ(argumentsOf("from 3 4").error, MciError::unrecognizedKeyword);
    EXPECT_EQ(argumentsOf("\"from\" 3").error, MciError::unrecognizedKeyword);
    EXPECT_EQ(argumentsOf("from").error, MciError::missingParameter);
    EXPECT_EQ(argumentsOf("time format").error, MciError::missingParameter);
    EXPECT_EQ(argumentsOf("from 3 from 4").error, MciError::duplicateFlags);
}

TEST(AnInteger, ConsistsOfDecimalDigitsAndIsAtMost2147483647) {
    EXPECT_EQ(parseInteger("0").value, 0);
    EXPECT_EQ(parseInteger("0042").value, 42);
    EXPECT_EQ(parseInteger("2147483647").value, 2147483647);
    for (const std::string_view text : {"", "-0", "-1", "+1", " 1", "1 ", "1x", "x", "1.5", "0x10",
                                        "2147483648", "99999999999999999999999999"}) {
        EXPECT_EQ(parseInteger(text).error, MciError::badInteger) << text;
    }
}

TEST(TheItemOfAStatusCommand, IsTheOneKeywordWithoutAValueInTheCommand) {
    static constexpr Keyword items[] = {{"length"}, {"mode"}, {"track", Takes::value}};
    const auto itemOf = [](std::string_view text) {
        const auto command = parseCommand(text);
        return onlyItem(parseArguments(command.value.words, items).value, items);
    };
    EXPECT_EQ(itemOf("status cd track 3 length").value, "length");
    EXPECT_EQ(itemOf("status cd length mode").error, MciError::flagsNotCompatible);
    EXPECT_EQ(itemOf("status cd track 3").error, MciError::missingParameter);
}

TEST(LowerCase, ChangesOnlyAsciiLetters) {
    EXPECT_EQ(asciiLowerCase("AZ az [@] \xC3\x84"), "az az [@] \xC3\x84");
}

} // namespace
} // namespace sonarith::mci
