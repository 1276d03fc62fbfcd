// SPDX-License-Identifier: GPL-3.0-or-later
// Reads arbitrary bytes as the end of an MP3 file. If the bytes contain a tag, writes the fields
// of this tag as a new tag and reads the new tag: every written field must be unchanged.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "formats/id3v1_tag.h"
#include "platform/text/unicode.h"
#include "platform/text/windows_1252.h"
#include "require.h"

namespace {

using namespace sonarith;
using fuzz::require;

void checkLengths(const Mp3Info& info) {
    for (const std::string* text : {&info.Title, &info.Artist, &info.Album}) {
        require(isValidUtf8(*text) && characterCount(*text) <= 30);
    }
    require(characterCount(info.Comment) <= 29 && characterCount(info.Year) <= 4);
    require(characterCount(info.Track) <= 1);
    require(info.Genre >= 0 && info.Genre <= 255);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    require(windows1252Of(textOfWindows1252(bytes)) == bytes);
    // id3v1Tag() must not crash on any title: the user can type any text, and `bytes` need not even
    // be UTF-8.
    static_cast<void>(id3v1Tag({.title = std::string(bytes)}));
    require(windows1252Of(bytes).size() <= characterCount(bytes));

    Mp3Info info;
    readId3v1Tag(bytes, info);
    checkLengths(info);
    if (!info.HasTag) {
        require(info.Genre == 255 && info.Title.empty());
        return 0;
    }
    const auto tag = id3v1Tag({.title = info.Title,
                               .artist = info.Artist,
                               .album = info.Album,
                               .year = info.Year,
                               .comment = info.Comment,
                               .genre = static_cast<std::uint8_t>(info.Genre)});
    Mp3Info again = info;
    readId3v1Tag({reinterpret_cast<const char*>(tag.data()), tag.size()}, again);
    require(again.HasTag && again.Title == info.Title && again.Artist == info.Artist);
    require(again.Album == info.Album && again.Year == info.Year);
    require(again.Comment == info.Comment && again.Genre == info.Genre);
    return 0;
}
