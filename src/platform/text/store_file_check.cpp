// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/store_file_check.h"

#include "platform/text/unicode.h"

namespace sonarith {

namespace {

/// Whether the quotes of a value are closed and a character follows each backslash that starts an
/// escape.
bool isClosed(std::string_view value) {
    bool quoted = false;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\') {
            if (++i == value.size()) {
                return false;
            }
        } else if (value[i] == '"') {
            quoted = !quoted;
        }
    }
    return !quoted;
}

StoreFileState checkLine(std::string_view line) {
    if (!line.empty() && line.back() == '\r') {
        line.remove_suffix(1);
    }
    const auto start = line.find_first_not_of(" \t");
    if (start == std::string_view::npos || line[start] == ';') {
        return StoreFileState::whole;
    }
    if (line[start] == '[') {
        return line.find(']', start) != std::string_view::npos ? StoreFileState::whole
                                                               : StoreFileState::foreign;
    }
    const auto equals = line.find('=', start);
    if (equals == std::string_view::npos || equals == start) {
        return StoreFileState::foreign;
    }
    return isClosed(line.substr(equals + 1)) ? StoreFileState::whole : StoreFileState::torn;
}

} // namespace

StoreFileState checkStoreFile(std::string_view bytes) {
    constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
    if (bytes.size() > longestStoreFileBytes || bytes.find('\0') != std::string_view::npos) {
        return StoreFileState::foreign;
    }
    if (bytes.substr(0, byteOrderMark.size()) == byteOrderMark) {
        bytes.remove_prefix(
            byteOrderMark.size()); // added by some editors when a user edits the file
    }
    while (!bytes.empty()) {
        const auto end = bytes.find('\n');
        if (end == std::string_view::npos) {
            return StoreFileState::torn;
        }
        const std::string_view line = bytes.substr(0, end);
        if (!isValidUtf8(line)) {
            return StoreFileState::foreign;
        }
        if (const StoreFileState state = checkLine(line); state != StoreFileState::whole) {
            return state;
        }
        bytes.remove_prefix(end + 1);
    }
    return StoreFileState::whole;
}

} // namespace sonarith
