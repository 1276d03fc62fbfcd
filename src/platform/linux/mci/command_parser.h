// SPDX-License-Identifier: GPL-3.0-or-later
// Splits the text of a media control command into its verb, its device and its words, and the words
// into keywords with values. The callers supply the keywords and interpret them.
#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/mci/mci_errors.h"

namespace sonarith::mci {

/// A longer command is refused. The longest useful one is "save" with a path, and a path of this
/// system has at most 4096 bytes.
inline constexpr std::size_t maxCommandBytes = 8192;

enum class Verb {
    open,
    close,
    play,
    pause,
    resume,
    stop,
    seek,
    status,
    set,
    info,
    record,
    save,
    put,
    capability,
};

/// One word of a command. A quoted word is stored without its quotes and is never a keyword.
struct Word {
    std::string text;
    bool quoted = false;
};

struct Command {
    Verb verb = Verb::open;
    std::string device;      ///< the second word: alias, device name or "new"; ASCII lower case
    std::vector<Word> words; ///< the words after the device; empty for "save"
    std::string path;        ///< for "save" only: the text after the device, without its quotes
};

/// Parses a command. The text ends at its first NUL. Verb and device are case-insensitive. Errors:
/// missingCommandString, unrecognizedCommand, missingDeviceName, noClosingQuote, extraCharacters
/// (after a closing quote), commandTooLong.
[[nodiscard]] Outcome<Command> parseCommand(std::string_view text);

enum class Takes { nothing, value };

/// A keyword that a command supports: one or several words ("number of tracks"), lower case.
struct Keyword {
    std::string_view text;
    Takes takes = Takes::nothing;
};

/// The keywords found in a command, and their values.
class Arguments {
  public:
    [[nodiscard]] bool has(std::string_view keyword) const;
    /// The value of `keyword`, or a null pointer if it was not given. Valid during the lifetime of
    /// this object.
    [[nodiscard]] const std::string* value(std::string_view keyword) const;
    /// Whether no keyword was given.
    [[nodiscard]] bool empty() const { return found_.empty(); }

  private:
    friend Outcome<Arguments> parseArguments(std::span<const Word>, std::span<const Keyword>);
    std::map<std::string, std::string, std::less<>> found_;
};

/// Finds `keywords` in `words`, case-insensitive; where several keywords match, the longest counts.
/// "wait" and "notify" are always accepted and ignored. Even with "wait", a command returns before
/// playing or recording has ended. There is no window to notify. Errors: unrecognizedKeyword,
/// missingParameter (a keyword without its value), duplicateFlags.
[[nodiscard]] Outcome<Arguments> parseArguments(std::span<const Word> words,
                                                std::span<const Keyword> keywords);

/// Of the `keywords` that take no value, returns the one that `arguments` contains. Errors:
/// flagsNotCompatible if it contains two or more, missingParameter if it contains none.
[[nodiscard]] Outcome<std::string_view> onlyItem(const Arguments& arguments,
                                                 std::span<const Keyword> keywords);

/// Parses decimal digits, 0 to 2147483647. Errors: badInteger.
[[nodiscard]] Outcome<int> parseInteger(std::string_view text);

/// Converts ASCII letters to lower case; everything else is unchanged.
[[nodiscard]] std::string asciiLowerCase(std::string_view text);

} // namespace sonarith::mci
