// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/common_arguments.h"

#include <utility>

namespace sonarith::mci {

MciError parseNothing(std::span<const Word> words) {
    return parseArguments(words, {}).error;
}

Outcome<Arguments> parseSome(std::span<const Word> words, std::span<const Keyword> keywords) {
    Outcome<Arguments> arguments = parseArguments(words, keywords);
    if (arguments.ok() && arguments.value.empty()) {
        return MciError::missingParameter;
    }
    return arguments;
}

Outcome<Question> parseQuestion(std::span<const Word> words, std::span<const Keyword> keywords) {
    Outcome<Arguments> arguments = parseArguments(words, keywords);
    if (!arguments.ok()) {
        return arguments.error;
    }
    const Outcome<std::string_view> item = onlyItem(arguments.value, keywords);
    if (!item.ok()) {
        return item.error;
    }
    return Question{item.value, std::move(arguments.value)};
}

} // namespace sonarith::mci
