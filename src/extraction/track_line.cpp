// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/track_line.h"

#include "platform/text/numbers.h"

namespace sonarith {

namespace {
constexpr std::size_t numberWidth = 2;
// The index of the first character that trackNumberIn() reads. In a line of trackLine(), this is
// the blank before the number.
constexpr std::size_t numberPosition = 5;
constexpr std::size_t readWidth = 3;
} // namespace

std::string trackLine(std::int32_t number, std::string_view length) {
    return "Track " + rightAligned(std::to_string(number), numberWidth) + " - " +
           std::string(length);
}

Result<std::int32_t> trackNumberIn(std::string_view line) {
    if (line.size() <= numberPosition) {
        return 0;
    }
    return roundedToInteger32(numberOf(line.substr(numberPosition, readWidth)));
}

} // namespace sonarith
