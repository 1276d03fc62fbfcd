// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/sheet_text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>

#include "platform/text/unicode.h"

namespace sonarith::disc {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t";
// A longer text is truncated in error messages. This length is enough to recognise a file name, and
// short enough for one line of a window.
constexpr std::size_t maxShownBytes = 100;

Error cause(std::string text) {
    return {ErrorNumber::deviceInputOutput, std::move(text)};
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isLetter(char c) {
    return lower(c) >= 'a' && lower(c) <= 'z';
}

} // namespace

Error sheetError(std::string_view sheet, int line, std::string_view causeText) {
    return sheetError(sheet, line, cause(std::string(causeText)));
}

Error sheetError(std::string_view sheet, int line, const Error& cause) {
    std::string text(sheet);
    if (line > 0) {
        text += ", line " + std::to_string(line);
    }
    return {cause.number, text.append(": ").append(cause.text)};
}

std::string shown(std::string_view text) {
    std::string result = "\"";
    for (std::size_t at = 0; at < text.size();) {
        if (at >= maxShownBytes) {
            result += "...";
            break;
        }
        const std::size_t length = characterBytes(text.substr(at));
        const bool control = length == 1 && (text[at] < ' ' || text[at] == '\x7F');
        result += length == 0 || control ? std::string_view("?") : text.substr(at, length);
        at += std::max<std::size_t>(length, 1);
    }
    return result + "\"";
}

std::string msfText(std::int64_t sectors) {
    char text[32];
    const auto seconds = sectors / sectorsPerSecond;
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", static_cast<int>(seconds / 60),
                  static_cast<int>(seconds % 60), static_cast<int>(sectors % sectorsPerSecond));
    return text;
}

Result<std::vector<std::string_view>> linesOf(std::string_view sheet, std::string_view text) {
    if (text.size() > maxSheetBytes) {
        return sheetError(sheet, 0, "is longer than 1 MiB; no disc needs that much text");
    }
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const auto end = std::min(text.find_first_of("\r\n"), text.size());
        lines.push_back(text.substr(0, end));
        const int number = static_cast<int>(lines.size());
        if (end > maxLineBytes) {
            return sheetError(sheet, number, "the line is longer than 8192 bytes");
        }
        if (lines.back().find('\0') != std::string_view::npos) {
            return sheetError(sheet, number,
                              "the line contains a NUL byte; save the sheet as UTF-8 text");
        }
        text.remove_prefix(end);
        text.remove_prefix(text.starts_with("\r\n") ? 2 : text.empty() ? 0 : 1);
    }
    return lines;
}

std::string_view takeWord(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
    const auto end = std::min(rest.find_first_of(blanks), rest.size());
    const auto word = rest.substr(0, end);
    rest.remove_prefix(end);
    rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
    return word;
}

bool sameWord(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

Result<std::int64_t> parseNumber(std::string_view word, std::int64_t most) {
    if (word.empty() || !std::all_of(word.begin(), word.end(), isDigit)) {
        return cause(shown(word) + " is not a number");
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc{} || value > most) {
        return cause("the number " + shown(word) + " is too large; at most " +
                     std::to_string(most) + " is possible");
    }
    return value;
}

Result<std::int64_t> parseMsf(std::string_view word) {
    struct Part {
        const char* name;
        int most;
    };
    static constexpr Part parts[] = {
        {"minutes", 99}, {"seconds", 59}, {"frames", sectorsPerSecond - 1}};
    std::int64_t values[3] = {};
    std::string_view rest = word;
    for (std::size_t i = 0; i < std::size(parts); ++i) {
        const auto digits = static_cast<std::size_t>(
            std::find_if_not(rest.begin(), rest.end(), isDigit) - rest.begin());
        const bool last = i + 1 == std::size(parts);
        const bool endsWell = last ? digits == rest.size() : rest.substr(digits).starts_with(':');
        if (digits == 0 || !endsWell) {
            return cause(shown(word) + " is not a time in the form mm:ss:ff");
        }
        const auto value = parseNumber(rest.substr(0, digits), parts[i].most);
        if (!value.ok()) {
            return cause("the time " + shown(word) + " is out of range: " + parts[i].name +
                         " go up to " + std::to_string(parts[i].most));
        }
        values[i] = value.value();
        rest.remove_prefix(last ? digits : digits + 1);
    }
    return (values[0] * 60 + values[1]) * sectorsPerSecond + values[2];
}

Status checkImageName(std::string_view name) {
    if (name.empty()) {
        return cause("the name of the file is empty");
    }
    if (name.find('\0') != std::string_view::npos) {
        return cause("the name of the file contains a NUL byte");
    }
    const bool driveLetter = name.size() > 1 && name[1] == ':' && isLetter(name[0]);
    if (name.front() == '/' || name.front() == '\\' || driveLetter) {
        return cause(shown(name) + " is an absolute path; an image may only name files in its own "
                                   "folder or below it");
    }
    for (std::string_view rest = name;;) {
        const auto end = std::min(rest.find_first_of("/\\"), rest.size());
        if (rest.substr(0, end) == "..") {
            return cause(shown(name) + " contains the folder \"..\"; an image may only name files "
                                       "in its own folder or below it");
        }
        if (end == rest.size()) {
            return {};
        }
        rest.remove_prefix(end + 1);
    }
}

Result<std::size_t> fileIndex(std::vector<LayoutFile>& files, LayoutFile file) {
    const auto known = std::find_if(files.begin(), files.end(), [&](const LayoutFile& other) {
        return other.name == file.name && other.format == file.format;
    });
    const auto index = static_cast<std::size_t>(known - files.begin());
    if (known == files.end()) {
        if (files.size() == maxImageFiles) {
            return cause("the image names more than " + std::to_string(maxImageFiles) + " files");
        }
        if (const Status bounds = checkImageName(file.name); !bounds.ok()) {
            return bounds.error();
        }
        files.push_back(std::move(file));
    }
    return index;
}

} // namespace sonarith::disc
