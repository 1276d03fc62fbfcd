// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/text.h"

#include <gmock/gmock.h>

namespace sonarith {
namespace {

using namespace std::string_literals;

TEST(Text, ValidUtf8IsUnchanged) {
    EXPECT_EQ(toQString("Lied für Örtlichkeiten ♪ \xF0\x9F\x8E\xB5"),
              QString::fromUtf8("Lied für Örtlichkeiten ♪ \xF0\x9F\x8E\xB5"));
    EXPECT_EQ(toText(QString::fromUtf8("Ü\xF0\x9F\x8E\xB5")), "Ü\xF0\x9F\x8E\xB5");
}

TEST(Text, BytesThatAreNotUtf8SurviveTheRoundTrip) {
    const std::string names[] = {
        "\xFF"s,         "caf\xE9.wav"s,      "\xC3"s,
        "a\xC3"s,        "\xE2\x82"s,         "\xED\xA0\x80"s,
        "\xED\xB2\x80"s, "\xC0\x80"s,         "\xF4\x90\x80\x80",
        "\x80\x81\xFE"s, "\xF0\x9F\x8E x"s,   "x\xE9\xC3\xA9y"s,
        "null\0inside"s, "\xF5\x80\x80\x80"s,
    };
    for (const std::string& name : names) {
        EXPECT_EQ(toText(toQString(name)), name);
    }
}

TEST(Text, EveryPairOfBytesSurvivesTheRoundTrip) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const std::string text = {static_cast<char>(first), static_cast<char>(second)};
            ASSERT_EQ(toText(toQString(text)), text) << first << ' ' << second;
        }
    }
}

TEST(Text, ASurrogateEncodedInUtf8IsConvertedByteByByteAndBack) {
    EXPECT_EQ(toText(toQString("\xED\xB3\xA9")), "\xED\xB3\xA9");
    EXPECT_EQ(toQString("\xED\xB3\xA9").size(), 3);
}

TEST(Text, ALoneSurrogateThatRepresentsNoByteBecomesTheReplacementCharacter) {
    EXPECT_EQ(toText(QString(QChar(0xD800))), "\xEF\xBF\xBD");
    EXPECT_EQ(toText(QString(QChar(0xDD00))), "\xEF\xBF\xBD");
}

} // namespace
} // namespace sonarith
