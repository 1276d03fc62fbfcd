// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/id3v1_tag.h"

#include <algorithm>

#include "platform/text/blanks.h"
#include "platform/text/windows_1252.h"

namespace sonarith {

namespace {

struct Field {
    std::size_t offset;
    std::size_t length;
};
constexpr Field titleField{3, 30};
constexpr Field artistField{33, 30};
constexpr Field albumField{63, 30};
constexpr Field yearField{93, 4};
constexpr Field commentField{97, 30};
/// The bytes of the comment that are read; the comment's last byte may be a track number.
constexpr Field shortCommentField{97, 29};
constexpr Field trackField{126, 1};
constexpr Field genreField{127, 1};

constexpr std::string_view writtenMark = "TAG";
constexpr std::string_view searchedMark = "tag";
constexpr char caseDistance = 'a' - 'A';

constexpr std::int16_t noGenre = 255;

/// The field without trailing blanks; shorter or empty if `tag` ends before the field's end.
std::string bytesOf(const Field& field, std::string_view tag) {
    return field.offset > tag.size() ? std::string()
                                     : withoutBlanksBehind(tag.substr(field.offset, field.length));
}

std::string textOf(const Field& field, std::string_view tag) {
    return textOfWindows1252(bytesOf(field, tag));
}

void put(const std::string& bytes, const Field& field, std::array<std::byte, tagLength>& tag) {
    const std::size_t count = std::min(bytes.size(), field.length);
    std::transform(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count),
                   tag.begin() + static_cast<std::ptrdiff_t>(field.offset),
                   [](char c) { return static_cast<std::byte>(c); });
}

/// Finds searchedMark; each of its letters may be in upper or lower case. Compares bytes, because a
/// conversion of UTF-8 characters to lower case may change their length, and so the position of the
/// mark.
std::string_view::const_iterator findMark(std::string_view bytes) {
    return std::search(
        bytes.begin(), bytes.end(), searchedMark.begin(), searchedMark.end(),
        [](char byte, char letter) { return byte == letter || byte == letter - caseDistance; });
}

void clearTag(Mp3Info& info) {
    info.HasTag = false;
    for (std::string* text :
         {&info.Title, &info.Artist, &info.Album, &info.Year, &info.Comment, &info.Track}) {
        text->clear();
    }
    info.Genre = noGenre;
}

} // namespace

void readId3v1Tag(std::string_view lastBytes, Mp3Info& info) {
    const auto start = findMark(lastBytes);
    if (start == lastBytes.end()) {
        clearTag(info);
        return;
    }
    const auto tag = lastBytes.substr(static_cast<std::size_t>(start - lastBytes.begin()));
    info.HasTag = true;
    info.Title = textOf(titleField, tag);
    info.Artist = textOf(artistField, tag);
    info.Album = textOf(albumField, tag);
    info.Year = textOf(yearField, tag);
    info.Comment = textOf(shortCommentField, tag);
    info.Track = textOf(trackField, tag);
    if (const std::string genre = bytesOf(genreField, tag); !genre.empty()) {
        info.Genre = static_cast<std::uint8_t>(genre.front());
    }
}

std::array<std::byte, tagLength> id3v1Tag(const Id3v1Fields& fields) {
    std::array<std::byte, tagLength> tag;
    tag.fill(std::byte{' '});
    put(std::string(writtenMark), {0, writtenMark.size()}, tag);
    put(windows1252Of(fields.title), titleField, tag);
    put(windows1252Of(fields.artist), artistField, tag);
    put(windows1252Of(fields.album), albumField, tag);
    put(windows1252Of(fields.year), yearField, tag);
    put(windows1252Of(fields.comment), commentField, tag);
    tag[genreField.offset] = static_cast<std::byte>(fields.genre);
    return tag;
}

} // namespace sonarith
