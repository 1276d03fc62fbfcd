// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/wildcard.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "platform/text/unicode.h"

namespace sonarith {

namespace {

using Characters = std::vector<std::int32_t>;

struct Range {
    std::int32_t first;
    std::int32_t last;
};

/// One element of the pattern. An element matches either a run of any characters (even an empty
/// run) or exactly one character.
struct Element {
    enum class Kind { run, anyOne, inList, notInList };
    Kind kind;
    std::vector<Range> ranges = {};

    [[nodiscard]] bool takes(std::int32_t character) const {
        if (kind == Kind::anyOne) {
            return true;
        }
        const bool listed = std::any_of(ranges.begin(), ranges.end(), [&](const Range& range) {
            return character >= range.first && character <= range.last;
        });
        return listed == (kind == Kind::inList);
    }
};

/// The ranges in the text between two brackets; empty optional if a range is reversed.
std::optional<std::vector<Range>> rangesOf(const Characters& list) {
    std::vector<Range> ranges;
    for (std::size_t i = 0; i < list.size(); ++i) {
        const bool opensRange =
            i + 2 < list.size() && list[i + 1] == '-' && !(i == 0 && list[i] == '-');
        if (!opensRange) {
            ranges.push_back({list[i], list[i]});
            continue;
        }
        if (list[i + 2] < list[i]) {
            return std::nullopt;
        }
        ranges.push_back({list[i], list[i + 2]});
        i += 2;
    }
    return ranges;
}

/// The element for the text between two brackets. It has no ranges if the text is empty. Empty
/// optional if a range is reversed.
std::optional<Element> listElement(Characters list) {
    const bool negated = list.size() > 1 && list.front() == '!';
    if (negated) {
        list.erase(list.begin());
    }
    auto ranges = rangesOf(list);
    if (!ranges) {
        return std::nullopt;
    }
    return Element{negated ? Element::Kind::notInList : Element::Kind::inList, std::move(*ranges)};
}

/// The elements of the pattern; empty optional if the pattern is malformed and so matches no text.
std::optional<std::vector<Element>> elementsOf(const Characters& pattern) {
    std::vector<Element> elements;
    for (auto at = pattern.begin(); at != pattern.end(); ++at) {
        if (*at == '*') {
            elements.push_back({Element::Kind::run});
        } else if (*at == '?') {
            elements.push_back({Element::Kind::anyOne});
        } else if (*at == '#') {
            elements.push_back({Element::Kind::inList, {{'0', '9'}}});
        } else if (*at == '[') {
            const auto close = std::find(at, pattern.end(), ']');
            if (close == pattern.end()) {
                return std::nullopt;
            }
            auto element = listElement(Characters(at + 1, close));
            if (!element) {
                return std::nullopt;
            }
            if (!element->ranges.empty()) { // "[]" matches the empty text and needs no element
                elements.push_back(std::move(*element));
            }
            at = close;
        } else {
            elements.push_back({Element::Kind::inList, {{*at, *at}}});
        }
    }
    return elements;
}

} // namespace

bool matches(std::string_view text, std::string_view pattern) {
    const auto elements = elementsOf(charactersOf(pattern));
    if (!elements) {
        return false;
    }
    const Characters characters = charactersOf(text);
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::size_t element = 0;
    // The index of the last run that was reached. If the elements after this run do not match, the
    // run is extended by one character.
    std::size_t lastRun = none;
    std::size_t lastRunEnd = 0;
    std::size_t i = 0;
    while (i < characters.size()) {
        const bool more = element < elements->size();
        if (more && (*elements)[element].kind == Element::Kind::run) {
            lastRun = element++;
            lastRunEnd = i;
        } else if (more && (*elements)[element].takes(characters[i])) {
            ++element;
            ++i;
        } else if (lastRun != none) {
            // Only the last run needs to be extended: an extended earlier run could only skip
            // characters that the last run can also skip. This prevents exponential backtracking on
            // hostile patterns.
            element = lastRun + 1;
            i = ++lastRunEnd;
        } else {
            return false;
        }
    }
    return std::all_of(elements->begin() + static_cast<std::ptrdiff_t>(element), elements->end(),
                       [](const Element& rest) { return rest.kind == Element::Kind::run; });
}

} // namespace sonarith
