// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/id3v1_tag.h"

#include <gtest/gtest.h>

#include <string>

#include "support/mp3_bytes.h"

namespace sonarith {
namespace {

using namespace std::string_literals;
using test::padded;
using test::tagOf;

/// The last 256 bytes of a file, with `tag` from position `place` of these bytes (counted from 1).
/// The part of the tag that does not fit is cut off.
std::string withTagAt(std::size_t place, const std::string& tag) {
    std::string bytes(256, '.');
    bytes.replace(place - 1, tag.size(), tag);
    bytes.resize(256);
    return bytes;
}

Mp3Info reading(const std::string& bytes, Mp3Info info = {}) {
    readId3v1Tag(bytes, info);
    return info;
}

std::string bytesOf(const Id3v1Fields& fields) {
    const auto tag = id3v1Tag(fields);
    return {reinterpret_cast<const char*>(tag.data()), tag.size()};
}

// --- reading ---------------------------------------------------------------------------------

TEST(ReadId3v1Tag, ReadsTheFieldsOfATagAtTheEnd) {
    const Mp3Info info =
        reading(withTagAt(129, tagOf("Title", "Artist", "Album", "1999", "Comment", 17)));
    EXPECT_TRUE(info.HasTag);
    EXPECT_EQ(info.Title, "Title");
    EXPECT_EQ(info.Artist, "Artist");
    EXPECT_EQ(info.Album, "Album");
    EXPECT_EQ(info.Year, "1999");
    EXPECT_EQ(info.Comment, "Comment");
    EXPECT_EQ(info.Track, "");
    EXPECT_EQ(info.Genre, 17);
    EXPECT_EQ(info.TagMark, "");
}

// The mark is the three letters "TAG" with which a tag begins.
TEST(ReadId3v1Tag, AcceptsTheMarkInUpperLowerAndMixedCase) {
    for (const char* mark : {"tag", "Tag", "tAG", "TAG"}) {
        std::string tag = tagOf("Title");
        tag.replace(0, 3, mark);
        EXPECT_EQ(reading(withTagAt(129, tag)).Title, "Title") << mark;
    }
    for (const char* other : {"TAJ", "T\x01G", "T G", "\x54\x41\x27"}) {
        std::string tag = tagOf("Title");
        tag.replace(0, 3, other);
        EXPECT_FALSE(reading(withTagAt(129, tag)).HasTag) << other;
    }
}

TEST(ReadId3v1Tag, WithoutAMarkAllTextsAreEmptyAndTheGenreIs255) {
    const Mp3Info before =
        reading(withTagAt(129, tagOf("T", "A", "B", "1999", padded("C", 30, '7'), 17)));
    ASSERT_EQ(before.Track, "7");
    for (const std::string& bytes : {std::string(256, '.'), std::string(256, '\0'), ""s, "ta"s}) {
        const Mp3Info info = reading(bytes, before);
        EXPECT_FALSE(info.HasTag);
        EXPECT_EQ(info.Title + info.Artist + info.Album + info.Year + info.Comment + info.Track,
                  "");
        EXPECT_EQ(info.Genre, 255);
    }
}

TEST(ReadId3v1Tag, FindsACompleteMarkAtAnyPosition) {
    // `place` counts from 1; beyond 254 the mark is incomplete.
    std::string pattern;
    for (int i = 0; i < 256; ++i) {
        pattern += static_cast<char>('!' + i % 90);
    }
    for (std::size_t place = 1; place <= 256; ++place) {
        std::string bytes = pattern;
        bytes.replace(place - 1, 3, "tag");
        bytes.resize(256);
        Mp3Info before;
        before.Genre = 99;
        const Mp3Info info = reading(bytes, before);
        if (place > 254) {
            EXPECT_FALSE(info.HasTag) << place;
            continue;
        }
        const auto part = [&](std::size_t start, std::size_t length) {
            std::string text;
            for (std::size_t i = start; i < start + length && i <= 256; ++i) {
                text += bytes[i - 1];
            }
            return text;
        };
        ASSERT_TRUE(info.HasTag) << place;
        EXPECT_EQ(info.Title, part(place + 3, 30)) << place;
        EXPECT_EQ(info.Artist, part(place + 33, 30)) << place;
        EXPECT_EQ(info.Album, part(place + 63, 30)) << place;
        EXPECT_EQ(info.Year, part(place + 93, 4)) << place;
        EXPECT_EQ(info.Comment, part(place + 97, 29)) << place;
        EXPECT_EQ(info.Track, part(place + 126, 1)) << place;
        EXPECT_EQ(info.Genre, place + 127 <= 256 ? bytes[place + 126] : 99) << place;
    }
}

TEST(ReadId3v1Tag, ReadsFromTheFirstMarkEvenIfTheRealTagBeginsLater) {
    std::string bytes = withTagAt(129, tagOf("Title", "Artist"));
    bytes.replace(99, 3, "tag");
    bytes[226] = 42;
    const Mp3Info info = reading(bytes);
    EXPECT_EQ(info.Title, std::string(26, '.') + "TAGT");
    EXPECT_EQ(info.Genre, 42);
}

TEST(ReadId3v1Tag, RemovesOnlyTrailingBlanks) {
    const Mp3Info info =
        reading(withTagAt(129, "TAG" + padded("  Title", 30) + padded("Artist", 30, '\0') +
                                   padded("Album\0 "s, 30) + "20  " + padded("", 30) + "\x05"));
    EXPECT_EQ(info.Title, "  Title");
    EXPECT_EQ(info.Artist, padded("Artist", 30, '\0'));
    EXPECT_EQ(info.Album, "Album\0"s);
    EXPECT_EQ(info.Year, "20");
    EXPECT_EQ(info.Comment, "");
}

TEST(ReadId3v1Tag, TheThirtiethByteOfTheCommentIsTheTrack) {
    const Mp3Info info =
        reading(withTagAt(129, tagOf("T", "", "", "", "123456789012345678901234567890")));
    EXPECT_EQ(info.Comment, "12345678901234567890123456789");
    EXPECT_EQ(info.Track, "0");
    const std::string accented = padded("", 29, 'x') + "\xe9";
    EXPECT_EQ(reading(withTagAt(129, tagOf("T", "", "", "", accented))).Track, "\xc3\xa9");
}

TEST(ReadId3v1Tag, TheGenreIsTheValueOfItsByteUnlessTheByteIsABlank) {
    for (int code = 0; code < 256; ++code) {
        Mp3Info before;
        before.Genre = 99;
        const Mp3Info info = reading(
            withTagAt(129, tagOf("T", "", "", "", "", static_cast<unsigned char>(code))), before);
        EXPECT_EQ(info.Genre, code == 32 ? 99 : code);
    }
}

TEST(ReadId3v1Tag, FindsTheMarkInTheUnconvertedBytesAndConvertsTheFieldsFromWindows1252) {
    // The bytes before the tag are UTF-8 characters that are shorter in lower case, so a conversion
    // to lower case would change the position of the tag.
    std::string bytes = withTagAt(129, tagOf("Title", "A"));
    for (std::size_t i = 0; i + 3 < 120; i += 3) {
        bytes.replace(i, 3, "\xe2\x84\xaa");
    }
    EXPECT_EQ(reading(bytes).Title, "Title");
    EXPECT_EQ(reading(withTagAt(129, tagOf("Z\xfcrich \x80 \x81"))).Title,
              "Z\xc3\xbcrich \xe2\x82\xac \xc2\x81");
}

// --- writing ---------------------------------------------------------------------------------

TEST(Id3v1Tag, WritesEachFieldAtItsOffsetPaddedWithBlanks) {
    EXPECT_EQ(bytesOf({"Title", "Artist", "Album", "1999", "Comment", 17}),
              tagOf("Title", "Artist", "Album", "1999", "Comment", 17));
    EXPECT_EQ(bytesOf({}), "TAG" + std::string(124, ' ') + '\0');
    EXPECT_EQ(bytesOf({.year = "20"}).substr(93, 4), "20  ");
}

TEST(Id3v1Tag, ShortensFieldsThatAreTooLong) {
    const std::string longText(31, 'x');
    const std::string tag = bytesOf({longText + "y", longText, longText, "20245", longText, 255});
    EXPECT_EQ(tag, "TAG" + std::string(90, 'x') + "2024" + std::string(30, 'x') + '\xff');
}

TEST(Id3v1Tag, LimitsFieldsByTheirBytesInTheCodePage) {
    std::string umlauts;
    std::string decomposed;
    for (int i = 0; i < 31; ++i) {
        umlauts += "\xc3\xbc";
        decomposed += "u\xcc\x88";
    }
    const std::string expected(30, '\xfc');
    EXPECT_EQ(bytesOf({.title = umlauts}).substr(3, 31), expected + " ");
    EXPECT_EQ(bytesOf({.title = decomposed}).substr(3, 31), expected + " ");
    EXPECT_EQ(bytesOf({.artist = "\xe4\xb8\xad\xe2\x82\xac"}).substr(33, 3), "?\x80 ");
}

TEST(Id3v1Tag, KeepsEveryByteOfAFieldThatIsReadAndWritten) {
    for (int first = 1; first < 256; first += 30) {
        std::string title;
        for (int code = first; code < first + 30; ++code) {
            title += code % 256 == 0 ? '1' : static_cast<char>(code);
        }
        const Mp3Info info = reading(withTagAt(129, tagOf(title)));
        EXPECT_EQ(bytesOf({.title = info.Title}).substr(3, 30), padded(title, 30));
    }
}

} // namespace
} // namespace sonarith
