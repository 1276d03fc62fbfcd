// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/command_parser.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace sonarith::mci {
namespace {

constexpr std::string_view blanks = " \t\r\n";

constexpr std::pair<std::string_view, Verb> verbs[] = {
    {"open", Verb::open},   {"close", Verb::close},           {"play", Verb::play},
    {"pause", Verb::pause}, {"resume", Verb::resume},         {"stop", Verb::stop},
    {"seek", Verb::seek},   {"status", Verb::status},         {"set", Verb::set},
    {"info", Verb::info},   {"record", Verb::record},         {"save", Verb::save},
    {"put", Verb::put},     {"capability", Verb::capability},
};

void skipBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
}

/// Removes one word from the beginning of `text`, which is not empty and does not begin with a
/// blank.
Outcome<Word> takeWord(std::string_view& text) {
    if (text.front() != '"') {
        const std::size_t length = std::min(text.find_first_of(blanks), text.size());
        Word word{std::string(text.substr(0, length)), false};
        text.remove_prefix(length);
        return word;
    }
    const std::size_t closing = text.find('"', 1);
    if (closing == std::string_view::npos) {
        return MciError::noClosingQuote;
    }
    Word word{std::string(text.substr(1, closing - 1)), true};
    text.remove_prefix(closing + 1);
    if (!text.empty() && blanks.find(text.front()) == std::string_view::npos) {
        return MciError::extraCharacters;
    }
    return word;
}

std::string withoutQuotes(std::string_view path) {
    if (path.size() >= 2 && path.front() == '"' && path.back() == '"') {
        path = path.substr(1, path.size() - 2);
    }
    return std::string(path);
}

std::optional<Verb> verbNamed(std::string_view name) {
    const auto* found = std::find_if(std::begin(verbs), std::end(verbs),
                                     [&](const auto& v) { return v.first == name; });
    return found == std::end(verbs) ? std::nullopt : std::optional(found->second);
}

/// The number of `words` that the keyword matches; 0 if `words` do not begin with it.
std::size_t wordsMatched(std::span<const Word> words, std::string_view keyword) {
    std::size_t count = 0;
    while (!keyword.empty()) {
        const std::size_t length = std::min(keyword.find(' '), keyword.size());
        if (count == words.size() || words[count].quoted ||
            asciiLowerCase(words[count].text) != keyword.substr(0, length)) {
            return 0;
        }
        ++count;
        keyword.remove_prefix(length);
        skipBlanks(keyword);
    }
    return count;
}

struct Match {
    Keyword keyword;
    std::size_t words = 0; ///< 0: no keyword matches
};

Match longestMatch(std::span<const Word> words, std::span<const Keyword> keywords) {
    Match best;
    for (const Keyword& keyword : keywords) {
        const std::size_t count = wordsMatched(words, keyword.text);
        if (count > best.words) {
            best = {keyword, count};
        }
    }
    return best;
}

} // namespace

std::string asciiLowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return lower;
}

Outcome<int> parseInteger(std::string_view text) {
    int number = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (problem != std::errc() || end != text.data() + text.size() || text.front() == '-') {
        return MciError::badInteger;
    }
    return number;
}

Outcome<Command> parseCommand(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    if (text.size() > maxCommandBytes) {
        return MciError::commandTooLong;
    }
    skipBlanks(text);
    if (text.empty()) {
        return MciError::missingCommandString;
    }
    const Outcome<Word> verbWord = takeWord(text);
    if (!verbWord.ok()) {
        return verbWord.error;
    }
    const auto verb = verbNamed(asciiLowerCase(verbWord.value.text));
    if (!verb) {
        return MciError::unrecognizedCommand;
    }
    skipBlanks(text);
    if (text.empty()) {
        return MciError::missingDeviceName;
    }
    const Outcome<Word> device = takeWord(text);
    if (!device.ok()) {
        return device.error;
    }
    if (device.value.text.empty()) {
        return MciError::missingDeviceName;
    }
    Command command{*verb, asciiLowerCase(device.value.text), {}, {}};
    skipBlanks(text);
    // In a save command, the rest of the text is the path: it may contain blanks, and callers
    // usually do not quote it.
    if (command.verb == Verb::save) {
        command.path = withoutQuotes(text);
        return command;
    }
    while (!text.empty()) {
        Outcome<Word> word = takeWord(text);
        if (!word.ok()) {
            return word.error;
        }
        command.words.push_back(std::move(word.value));
        skipBlanks(text);
    }
    return command;
}

bool Arguments::has(std::string_view keyword) const {
    return found_.find(keyword) != found_.end();
}

const std::string* Arguments::value(std::string_view keyword) const {
    const auto place = found_.find(keyword);
    return place == found_.end() ? nullptr : &place->second;
}

Outcome<Arguments> parseArguments(std::span<const Word> words, std::span<const Keyword> keywords) {
    static constexpr Keyword always[] = {{"wait"}, {"notify"}};
    Arguments arguments;
    while (!words.empty()) {
        Match match = longestMatch(words, keywords);
        if (match.words == 0) {
            match = longestMatch(words, always);
            if (match.words == 0) {
                return MciError::unrecognizedKeyword;
            }
            words = words.subspan(match.words);
            continue;
        }
        words = words.subspan(match.words);
        std::string value;
        if (match.keyword.takes == Takes::value) {
            if (words.empty()) {
                return MciError::missingParameter;
            }
            value = words.front().text;
            words = words.subspan(1);
        }
        if (!arguments.found_.emplace(match.keyword.text, std::move(value)).second) {
            return MciError::duplicateFlags;
        }
    }
    return arguments;
}

Outcome<std::string_view> onlyItem(const Arguments& arguments, std::span<const Keyword> keywords) {
    std::string_view item;
    for (const Keyword& keyword : keywords) {
        if (keyword.takes == Takes::value || !arguments.has(keyword.text)) {
            continue;
        }
        if (!item.empty()) {
            return MciError::flagsNotCompatible;
        }
        item = keyword.text;
    }
    if (item.empty()) {
        return MciError::missingParameter;
    }
    return item;
}

} // namespace sonarith::mci
