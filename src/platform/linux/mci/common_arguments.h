// SPDX-License-Identifier: GPL-3.0-or-later
// Parses the words of a command in the ways that all devices share, before the device interprets
// the result. The syntax of a single keyword is in command_parser.h.
#pragma once

#include <span>
#include <string_view>

#include "platform/linux/mci/command_parser.h"
#include "platform/linux/mci/mci_errors.h"

namespace sonarith::mci {

/// Parses the words of a command that has no keywords of its own; "wait" and "notify" are accepted.
/// Errors: those of parseArguments.
[[nodiscard]] MciError parseNothing(std::span<const Word> words);

/// Parses the words of a command, such as "set" or "info", that needs a keyword. Errors: those of
/// parseArguments, and missingParameter if no keyword is given.
[[nodiscard]] Outcome<Arguments> parseSome(std::span<const Word> words,
                                           std::span<const Keyword> keywords);

/// The item that a "status" command queries.
struct Question {
    std::string_view item; ///< one of the keywords passed to parseQuestion
    Arguments arguments;   ///< the item ("length") and its qualifiers (such as "track 2")
};
/// Parses the words of a "status" command. Errors: those of parseArguments and of onlyItem.
[[nodiscard]] Outcome<Question> parseQuestion(std::span<const Word> words,
                                              std::span<const Keyword> keywords);

} // namespace sonarith::mci
