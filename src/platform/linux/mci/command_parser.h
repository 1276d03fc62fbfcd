// SPDX-License-Identifier: GPL-3.0-or-later
// From the text of a media control command to its verb, its device and its words, and from the
// words to keywords with values. What the words mean is for the devices to say.
#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/mci/mci_errors.h"

namespace sonarith::mci {

/// A longer command is refused. The longest that has a purpose is "save" with a path, and a path
/// of this system has at most 4096 bytes.
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

/// One word of a command. A quoted one has lost its quotes and is never a keyword.
struct Word {
    std::string text;
    bool quoted = false;
};

struct Command {
    Verb verb = Verb::open;
    std::string device;      ///< the second word: alias, device name or "new"; ASCII lower case
    std::vector<Word> words; ///< what follows the device; empty for "save"
    std::string path;        ///< of "save" alone: the rest of the line, quotes around it dropped
};

/// Takes a command apart. The text ends at its first NUL. Verb and device are case-blind.
/// Errors: missingCommandString, unrecognizedCommand, missingDeviceName, noClosingQuote,
/// extraCharacters (behind a closing quote), commandTooLong.
[[nodiscard]] Outcome<Command> parseCommand(std::string_view text);

enum class Takes { nothing, value };

/// A keyword that a command understands: one or several words ("number of tracks"), lower case.
struct Keyword {
    std::string_view text;
    Takes takes = Takes::nothing;
};

/// The keywords found in a command, and their values.
class Arguments {
  public:
    [[nodiscard]] bool has(std::string_view keyword) const;
    /// The value given to `keyword`, or a null pointer. Valid while the object lives.
    [[nodiscard]] const std::string* value(std::string_view keyword) const;
    /// Whether no keyword was given.
    [[nodiscard]] bool empty() const { return found_.empty(); }

  private:
    friend Outcome<Arguments> parseArguments(std::span<const Word>, std::span<const Keyword>);
    std::map<std::string, std::string, std::less<>> found_;
};

/// Finds `keywords`, case-blind, the longest one that fits first. "wait" and "notify" are
/// understood with every command and stand in no result: each command has done its work when it
/// returns, or goes on by itself, and there is nobody to notify.
/// Errors: unrecognizedKeyword, missingParameter (a keyword without its value), duplicateFlags.
[[nodiscard]] Outcome<Arguments> parseArguments(std::span<const Word> words,
                                                std::span<const Keyword> keywords);

/// The one of `keywords` that takes no value and was given. Errors: flagsNotCompatible for two of
/// them, missingParameter for none.
[[nodiscard]] Outcome<std::string_view> onlyItem(const Arguments& arguments,
                                                 std::span<const Keyword> keywords);

/// Decimal digits, 0 to 2147483647. Errors: badInteger.
[[nodiscard]] Outcome<int> parseInteger(std::string_view text);

/// ASCII letters in lower case; everything else as it is.
[[nodiscard]] std::string asciiLowerCase(std::string_view text);

} // namespace sonarith::mci
