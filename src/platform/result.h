// SPDX-License-Identifier: GPL-3.0-or-later
// Failures as values: an operation that can fail returns a Status or a Result instead of throwing.
// Programming errors are not reported in this way: assertions detect them.
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace sonarith {

/// The numbers of the failures that the logic distinguishes, or that its procedures return to their
/// callers.
enum class ErrorNumber : int {
    invalidProcedureCall = 5,
    overflow = 6,
    subscriptOutOfRange = 9,
    divisionByZero = 11,
    typeMismatch = 13,
    badFileName = 52,
    fileNotFound = 53,
    badFileMode = 54,
    deviceInputOutput = 57,
    fileAlreadyExists = 58,
    diskFull = 61,
    badRecordNumber = 63,
    deviceUnavailable = 68,
    permissionDenied = 70,
    pathFileAccess = 75,
    pathNotFound = 76,
    objectNotSet = 91,
    invalidPropertyValue = 380,
    dialogCancelled = 32755,
    elementNotFound = 35601,
    keyNotUnique = 35602,
    elementRemoved = 35605,
};

/// Why an operation failed: a number for the logic, a text for users, and the name of the procedure
/// that reported the failure to its caller (empty if no caller needs the name).
struct Error {
    ErrorNumber number;
    std::string text;
    std::string source = {};
};

/// The outcome of an operation that yields no value.
class [[nodiscard]] Status {
  public:
    Status() = default;
    Status(Error error) : outcome_(std::move(error)) {}
    Status(ErrorNumber number, std::string text) : outcome_(Error{number, std::move(text)}) {}

    [[nodiscard]] bool ok() const { return std::holds_alternative<std::monostate>(outcome_); }
    /// Valid only after a failure.
    [[nodiscard]] const Error& error() const { return std::get<Error>(outcome_); }

    /// States that the caller deliberately ignores a failure of this operation.
    void passOver() const {}

  private:
    std::variant<std::monostate, Error> outcome_;
};

/// A value, or the reason why there is none.
template <typename T>
class [[nodiscard]] Result {
  public:
    Result(T value) : outcome_(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : outcome_(std::in_place_index<1>, std::move(error)) {}
    Result(ErrorNumber number, std::string text)
        : outcome_(std::in_place_index<1>, Error{number, std::move(text)}) {}

    [[nodiscard]] bool ok() const { return outcome_.index() == 0; }
    /// Valid only after success.
    [[nodiscard]] const T& value() const { return std::get<0>(outcome_); }
    [[nodiscard]] T& value() { return std::get<0>(outcome_); }
    /// Valid only after a failure.
    [[nodiscard]] const Error& error() const { return std::get<1>(outcome_); }
    [[nodiscard]] T valueOr(T fallback) const { return ok() ? value() : std::move(fallback); }

    /// States that the caller deliberately ignores both the value and a failure.
    void passOver() const {}

    /// Writes the value to `target`. A failure is ignored and leaves `target` unchanged.
    void storeIn(T& target) const {
        if (ok()) {
            target = value();
        }
    }

  private:
    std::variant<T, Error> outcome_;
};

} // namespace sonarith
