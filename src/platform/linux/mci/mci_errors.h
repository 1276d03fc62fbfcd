// SPDX-License-Identifier: GPL-3.0-or-later
// Defines the error numbers that media control strings (commands) return, a text for each number,
// and the result types that functions inside the interpreter return. This header depends on no
// command and no device.
#pragma once

#include <string>
#include <string_view>

#include "platform/media_control.h"

namespace sonarith::mci {

/// The numbers are those that programs using this command interface expect: general errors start at
/// 256, errors of wave devices at 320, and errors that this program adds at 512.
enum class MciError : int {
    none = mciSuccess,
    unrecognizedKeyword = 259,
    unrecognizedCommand = 261,
    invalidDeviceName = 263,
    deviceOpen = 265,
    missingCommandString = 267,
    missingStringArgument = 269,
    badInteger = 270,
    missingParameter = 273,
    unsupportedFunction = 274,
    deviceNotReady = 276,
    cannotUseAll = 279,
    outOfRange = 282,
    flagsNotCompatible = 284,
    fileNotSaved = 286,
    deviceTypeRequired = 287,
    duplicateAlias = 289,
    badConstant = 290,
    mustUseShareable = 291,
    missingDeviceName = 292,
    badTimeFormat = 293,
    noClosingQuote = 294,
    duplicateFlags = 295,
    unnamedResource = 298,
    newRequiresAlias = 299,
    noElementAllowed = 301,
    nonapplicableFunction = 302,
    extraCharacters = 305,
    deviceNotInstalled = 306,
    waveInputsInUse = 322,
    waveInputsUnsuitable = 328,
    dataTrack = 512,      ///< specific to our compact disc device: a data track was to be played
    commandTooLong = 513, ///< specific to our interpreter: see maxCommandBytes
};

/// The text for a number; empty for 0 and for numbers outside MciError.
[[nodiscard]] std::string_view errorText(int status);

/// A value, or the error number if there is no value.
template <typename T>
struct Outcome {
    MciError error = MciError::none;
    T value{};

    Outcome(T result) : value(std::move(result)) {}
    Outcome(MciError number) : error(number) {}
    [[nodiscard]] bool ok() const { return error == MciError::none; }
};

/// The result of a command: a text (empty if the command returns no text), or an error.
using Reply = Outcome<std::string>;

/// The reply of a successful command that returns no text.
[[nodiscard]] inline Reply done() {
    return {std::string()};
}

} // namespace sonarith::mci
