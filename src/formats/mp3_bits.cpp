// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/mp3_bits.h"

#include <limits>

namespace sonarith {

std::string BytesToBits(FourBytes& bytes) {
    std::string digits;
    for (std::size_t element = 1; element < bytes.size(); ++element) {
        for (int weight = 7; weight >= 0; --weight) {
            const auto value = static_cast<std::uint8_t>(1U << static_cast<unsigned>(weight));
            if (bytes[element] / value == 1) {
                digits += '1';
                bytes[element] = static_cast<std::uint8_t>(bytes[element] - value);
            } else if (!digits.empty()) {
                digits += '0';
            }
        }
    }
    return digits;
}

Result<std::int32_t> BitsToLong(std::string_view digits) {
    constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();
    std::int64_t total = 0;
    for (const char digit : digits) {
        total = total * 2 + (digit == '1' ? 1 : 0);
        if (total > largest) {
            return {ErrorNumber::overflow, "Overflow"};
        }
    }
    return static_cast<std::int32_t>(total);
}

} // namespace sonarith
