// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/number_bases.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include "platform/text/windows_1252.h"

namespace sonarith {

namespace {

constexpr const char* noNumber = "Error";
/// The difference between a capital's code and its value as a digit: "A" has the value 10.
constexpr int letterDistance = 'A' - 10;

std::optional<int> digitValue(char character) {
    if (character >= '0' && character <= '9') {
        return character - '0';
    }
    if (character >= 'a' && character <= 'z') {
        return character - 'a' + 'A' - letterDistance;
    }
    if (character >= 'A' && character <= 'Z') {
        return character - letterDistance;
    }
    return std::nullopt;
}

/// Returns infinity for a number beyond the range of double.
std::optional<double> valueOf(std::string_view digits, std::int16_t base) {
    double value = 0;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const std::optional<int> digit = digitValue(digits[i]);
        if (!digit || *digit >= base) {
            return std::nullopt;
        }
        if (*digit > 0) {
            value += std::pow(base, static_cast<double>(digits.size() - 1 - i)) * *digit;
        }
    }
    return value;
}

/// Returns nothing if the digit's code would be above 255, the largest character code. Only
/// rounding errors make a remainder that large.
std::optional<std::string> digitOf(double remainder) {
    if (remainder < 10) {
        std::array<char, 32> text{}; // 15 digits, point and exponent: at most 21 characters
        constexpr int digits = 15;
        const auto end = std::to_chars(text.data(), text.data() + text.size(), std::fabs(remainder),
                                       std::chars_format::general, digits);
        return std::string(text.data(), end.ptr);
    }
    const double code = remainder + letterDistance;
    if (code > 255) {
        return std::nullopt;
    }
    return textOfWindows1252(std::string(1, static_cast<char>(static_cast<unsigned char>(code))));
}

} // namespace

std::string ConvertBase(std::string_view NumIn, std::int16_t BaseIn, std::int16_t BaseOut) {
    if (NumIn.empty() || BaseIn < 2 || BaseIn > 36 || BaseOut < 1 || BaseOut > 36) {
        return noNumber;
    }
    const std::optional<double> value = valueOf(NumIn, BaseIn);
    if (!value || !std::isfinite(*value)) {
        return noNumber;
    }
    double rest = *value;
    std::string result;
    do {
        const double remainder = ModDouble(rest, BaseOut).valueOr(0);
        rest = (rest - remainder) / BaseOut;
        const std::optional<std::string> digit = digitOf(remainder);
        if (!digit) {
            return noNumber;
        }
        result.insert(0, *digit);
    } while (rest > 0);
    return result;
}

Result<double> ModDouble(double Num, double Div) {
    if (Div == 0) {
        return {ErrorNumber::divisionByZero, "Division by zero"};
    }
    return Num - std::floor(Num / Div) * Div;
}

} // namespace sonarith
