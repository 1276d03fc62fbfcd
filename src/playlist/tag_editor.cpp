// SPDX-License-Identifier: GPL-3.0-or-later
#include "playlist/tag_editor.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "formats/id3v1_tag.h"
#include "platform/text/blanks.h"
#include "platform/text/numbers.h"

namespace sonarith {

namespace {

/// Returns 0 for a text that is not a number from 0 to 255.
std::uint8_t genreOf(const std::string& text) {
    const std::int32_t number = toInteger32(text).valueOr(0);
    return number >= 0 && number <= 255 ? static_cast<std::uint8_t>(number) : std::uint8_t{0};
}

} // namespace

TagEditor::TagEditor(const Platform& platform, FrmPlayList& form)
    : platform_(platform), form_(form) {
    form_.cmdTag.onClick = [this] {
        cmdTag_Click();
    };
}

void TagEditor::cmdTag_Click() {
    if (holdsOnlyBlanks(form_.Text5.text())) {
        return;
    }
    const std::string path = withoutBlanksAround(form_.Text5.text());
    // Deliberate: the artist's box is written to the title's field and vice versa, while
    // HeaderDisplay shows both fields as stored. So title and artist are swapped when a tag is
    // shown and then written without a change.
    const auto tag = id3v1Tag({.title = form_.Text4(1).text(),
                               .artist = form_.Text4(2).text(),
                               .album = form_.Text4(3).text(),
                               .year = form_.Text4(4).text(),
                               .comment = form_.Text4(5).text(),
                               .genre = genreOf(form_.Text4(6).text())});
    const auto file = platform_.files.openBinary(path, FileAccess::write);
    if (!file.ok()) {
        return;
    }
    // Without the length the position is unknown; writing at the start would damage the file.
    const auto length = file.value()->length();
    if (length.ok()) {
        const std::int64_t place = length.value() - static_cast<std::int64_t>(tagLength);
        file.value()->write(std::max(place, std::int64_t{0}), tag).passOver();
    }
}

} // namespace sonarith
