// SPDX-License-Identifier: GPL-3.0-or-later
// The beginnings that commands of every device have in common: how their words are read before a
// device looks at what they mean. What a single keyword is, command_parser.h knows.
#pragma once

#include <span>
#include <string_view>

#include "platform/linux/mci/command_parser.h"
#include "platform/linux/mci/mci_errors.h"

namespace sonarith::mci {

/// For a command without keywords. Errors: those of parseArguments.
[[nodiscard]] MciError parseNothing(std::span<const Word> words);

/// For a command that needs a keyword ("set", "info"). Errors: those of parseArguments, and
/// missingParameter where there is none.
[[nodiscard]] Outcome<Arguments> parseSome(std::span<const Word> words,
                                           std::span<const Keyword> keywords);

/// What a "status" asks for.
struct Question {
    std::string_view item; ///< one of the keywords
    Arguments arguments;   ///< it, and what was said about it ("track 2")
};
/// Errors: those of parseArguments and of onlyItem.
[[nodiscard]] Outcome<Question> parseQuestion(std::span<const Word> words,
                                              std::span<const Keyword> keywords);

} // namespace sonarith::mci
