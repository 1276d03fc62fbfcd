// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "platform/text/unicode.h"

namespace sonarith {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::size_t digitsAt(std::string_view text, std::size_t position) {
    std::size_t end = position;
    while (end < text.size() && isDigit(text[end])) {
        ++end;
    }
    return end - position;
}

/// Length of the number at the start of `text`, 0 if there is none. A number is an optional sign,
/// digits with at most one decimal point, and an optional exponent (the letter e or E, an optional
/// sign and digits).
std::size_t numberLength(std::string_view text) {
    std::size_t end = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
    std::size_t digits = digitsAt(text, end);
    end += digits;
    if (end < text.size() && text[end] == '.') {
        const std::size_t decimals = digitsAt(text, end + 1);
        digits += decimals;
        end += 1 + decimals;
    }
    if (digits == 0) {
        return 0;
    }
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        std::size_t exponent = end + 1;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) {
            ++exponent;
        }
        const std::size_t exponentDigits = digitsAt(text, exponent);
        if (exponentDigits > 0) {
            end = exponent + exponentDigits;
        }
    }
    return end;
}

/// Whether the absolute value of the number is less than 1. Writes the number as 0.d... times 10^n,
/// where the digit d is not 0, and tests whether n <= 0. Precondition: the number is not 0.
bool isBelowOne(std::string_view number) {
    const std::size_t mantissaEnd = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, mantissaEnd);
    const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
    const auto firstDigit = static_cast<std::int64_t>(mantissa.find_first_of("123456789"));
    std::int64_t exponent = 0;
    if (mantissaEnd < number.size()) {
        std::string_view digits = number.substr(mantissaEnd + 1);
        const bool negative = digits.front() == '-';
        if (negative || digits.front() == '+') {
            digits.remove_prefix(1);
        }
        // An exponent of 10^18 or more outweighs the digits of any mantissa that fits in memory, so
        // it is limited to 10^18; the sum below then cannot overflow.
        constexpr std::int64_t huge = 1'000'000'000'000'000'000;
        const auto outcome =
            std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
        exponent = outcome.ec == std::errc() ? std::min(exponent, huge) : huge;
        exponent = negative ? -exponent : exponent;
    }
    // The value of n for the mantissa without the exponent. If a digit other than 0 is before the
    // point, n is the number of digits from the first such digit to the point. Otherwise n is minus
    // the number of zeros directly after the point.
    const std::int64_t power = firstDigit < point ? point - firstDigit : point - firstDigit + 1;
    return power + exponent <= 0;
}

/// The value of the number; 0 if it is too close to 0 for a double, empty if it is too large.
/// Precondition: numberLength() accepts the whole text.
std::optional<double> valueOf(std::string_view number) {
    if (number.front() == '+') {
        number.remove_prefix(1); // from_chars does not accept a plus sign
    }
    double value = 0;
    const auto outcome = std::from_chars(number.data(), number.data() + number.size(), value);
    if (outcome.ec == std::errc()) {
        return value;
    }
    // Out of range; from_chars does not report whether the number is too large or too small.
    return isBelowOne(number) ? std::optional(0.0) : std::nullopt;
}

template <typename Integer>
Result<Integer> rounded(double number) {
    // nearbyint() rounds halves to the even integer in the default rounding mode, which this
    // program never changes.
    const double whole = std::nearbyint(number);
    if (!(whole >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
          whole <= static_cast<double>(std::numeric_limits<Integer>::max()))) {
        return {ErrorNumber::overflow, "Overflow"};
    }
    return static_cast<Integer>(whole);
}

template <typename Integer>
Result<Integer> toInteger(std::string_view text) {
    const Result<double> number = toDouble(text);
    return number.ok() ? rounded<Integer>(number.value()) : Result<Integer>(number.error());
}

} // namespace

double numberOf(std::string_view text) {
    std::string withoutBlanks;
    for (const char c : text) {
        if (!isBlank(c)) {
            withoutBlanks += c;
        }
    }
    const std::size_t length = numberLength(withoutBlanks);
    return length == 0 ? 0 : valueOf(std::string_view(withoutBlanks).substr(0, length)).value_or(0);
}

Result<double> toDouble(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    if (text.empty() || numberLength(text) != text.size()) {
        return {ErrorNumber::typeMismatch, "Type mismatch"};
    }
    const std::optional<double> value = valueOf(text);
    if (!value) {
        return {ErrorNumber::overflow, "Overflow"};
    }
    return *value;
}

Result<std::int16_t> toInteger16(std::string_view text) {
    return toInteger<std::int16_t>(text);
}

Result<std::int32_t> toInteger32(std::string_view text) {
    return toInteger<std::int32_t>(text);
}

Result<std::int16_t> roundedToInteger16(double number) {
    return rounded<std::int16_t>(number);
}

Result<std::int32_t> roundedToInteger32(double number) {
    return rounded<std::int32_t>(number);
}

std::string rightAligned(std::string_view text, std::size_t width) {
    const std::size_t length = characterCount(text);
    if (length >= width) {
        return leftCharacters(text, width);
    }
    return std::string(width - length, ' ').append(text);
}

} // namespace sonarith
