// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/toc_tokens.h"

#include <algorithm>

#include "platform/linux/disc/sheet_text.h"

namespace sonarith::disc {

namespace {

constexpr std::string_view blanksOfTokens = " \t\f\v";
constexpr std::string_view wordEnds = " \t\f\v\"{}";

bool isOctal(char c) {
    return c >= '0' && c <= '7';
}

/// The position of the closing quotation mark of the string at the beginning of `rest`, or npos.
std::size_t closingMark(std::string_view rest) {
    for (std::size_t i = 1; i < rest.size(); ++i) {
        if (rest[i] == '"') {
            return i;
        }
        if (rest[i] == '\\') {
            ++i;
        }
    }
    return std::string_view::npos;
}

Status splitLine(std::string_view sheet, std::string_view rest, int line,
                 std::vector<TocToken>& tokens) {
    for (;;) {
        rest.remove_prefix(std::min(rest.find_first_not_of(blanksOfTokens), rest.size()));
        if (rest.empty() || rest.starts_with("//")) {
            return {};
        }
        std::size_t length = 1;
        if (rest.front() == '{' || rest.front() == '}') {
            tokens.push_back(
                {rest.front() == '{' ? TocTokenKind::openBrace : TocTokenKind::closeBrace,
                 rest.substr(0, 1), line});
        } else if (rest.front() == '"') {
            const auto mark = closingMark(rest);
            if (mark == std::string_view::npos) {
                return sheetError(sheet, line, "a string has no closing quotation mark");
            }
            tokens.push_back({TocTokenKind::string, rest.substr(1, mark - 1), line});
            length = mark + 1;
        } else {
            length = std::min(rest.find_first_of(wordEnds), rest.size());
            tokens.push_back({TocTokenKind::word, rest.substr(0, length), line});
        }
        rest.remove_prefix(length);
    }
}

} // namespace

Result<std::vector<TocToken>> tocTokens(std::string_view sheet, std::string_view text) {
    const auto lines = linesOf(sheet, text);
    if (!lines.ok()) {
        return lines.error();
    }
    std::vector<TocToken> tokens;
    int number = 0;
    for (const std::string_view line : lines.value()) {
        ++number;
        if (const Status status = splitLine(sheet, line, number, tokens); !status.ok()) {
            return status.error();
        }
    }
    tokens.push_back({TocTokenKind::end, {}, std::max(number, 1)});
    return tokens;
}

std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            result += text[i];
        } else if (const auto digits = text.substr(i + 1, 3);
                   digits.size() == 3 && std::all_of(digits.begin(), digits.end(), isOctal)) {
            const int byte = (digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0');
            result += static_cast<char>(byte & 0xff);
            i += 3;
        } else {
            result += text[++i];
        }
    }
    return result;
}

} // namespace sonarith::disc
