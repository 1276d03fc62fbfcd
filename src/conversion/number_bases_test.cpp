// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/number_bases.h"

#include <gtest/gtest.h>

#include <cmath>

namespace sonarith {
namespace {

TEST(ConvertBase, WritesANumberInAnotherBase) {
    EXPECT_EQ(ConvertBase("68", 10, 16), "44");
    EXPECT_EQ(ConvertBase("255", 10, 16), "FF");
    EXPECT_EQ(ConvertBase("0", 10, 16), "0");
    EXPECT_EQ(ConvertBase("000", 10, 16), "0");
    EXPECT_EQ(ConvertBase("15", 10, 16), "F");
    EXPECT_EQ(ConvertBase("16", 10, 16), "10");
    EXPECT_EQ(ConvertBase("1010", 2, 10), "10");
    EXPECT_EQ(ConvertBase("ZZ", 36, 2), "10100001111");
    EXPECT_EQ(ConvertBase("1295", 10, 36), "ZZ");
    EXPECT_EQ(ConvertBase("0042", 10, 10), "42");
}

TEST(ConvertBase, AcceptsLettersOfEitherCase) {
    EXPECT_EQ(ConvertBase("ff", 16, 10), "255");
    EXPECT_EQ(ConvertBase("Ff", 16, 10), "255");
    EXPECT_EQ(ConvertBase("z", 36, 10), "35");
}

TEST(ConvertBase, ConvertsNumbersUpTo255ToEachBaseAndBack) {
    for (std::int16_t base = 2; base <= 36; ++base) {
        for (int byte = 0; byte < 256; ++byte) {
            const std::string digits = ConvertBase(std::to_string(byte), 10, base);
            EXPECT_EQ(ConvertBase(digits, base, 10), std::to_string(byte)) << "base " << base;
        }
    }
}

TEST(ConvertBase, RefusesATextThatIsNoNumberInTheBase) {
    for (const char* text : {"12", "2", "1 ", " 1", "-1", "1.0", "\xc3\xa4", "@", "[", "/", ":"}) {
        EXPECT_EQ(ConvertBase(text, 2, 10), "Error") << text;
    }
    EXPECT_EQ(ConvertBase("g", 16, 10), "Error");
    EXPECT_EQ(ConvertBase("A", 10, 10), "Error");
}

TEST(ConvertBase, RefusesAnEmptyTextAndUnsupportedBases) {
    EXPECT_EQ(ConvertBase("", 10, 16), "Error");
    for (const std::int16_t base : {-32768, -2, 0, 37, 32767}) {
        EXPECT_EQ(ConvertBase("1", base, 10), "Error") << "base " << base;
        EXPECT_EQ(ConvertBase("1", 10, base), "Error") << "base " << base;
    }
    EXPECT_EQ(ConvertBase("0", 1, 10), "Error");
}

TEST(ConvertBase, AcceptsBase1ForTheResult) {
    // Tests only 0, because for any other number the function would never return: division by 1
    // does not reduce the number.
    EXPECT_EQ(ConvertBase("0", 10, 1), "0");
}

TEST(ConvertBase, IsExactUpTo53BitsAndTerminatesForLargerNumbers) {
    EXPECT_EQ(ConvertBase("9007199254740991", 10, 16), "1FFFFFFFFFFFFF");
    EXPECT_EQ(ConvertBase("18446744073709551616", 10, 16), "10000000000000000");
    EXPECT_EQ(ConvertBase(std::string(2000, '9'), 10, 16), "Error");
    for (std::int16_t base = 2; base <= 36; ++base) {
        EXPECT_FALSE(ConvertBase(std::string(300, '7'), 10, base).empty());
        // Rounding errors make some remainders negative; their digits have no sign.
        const std::string digits = ConvertBase(std::string(100, '1'), 2, base);
        EXPECT_EQ(digits.find('-'), std::string::npos) << "base " << base << ": " << digits;
    }
}

TEST(ModDouble, RoundsTheQuotientDownwards) {
    EXPECT_EQ(ModDouble(68, 16).value(), 4);
    EXPECT_EQ(ModDouble(64, 16).value(), 0);
    EXPECT_EQ(ModDouble(5.5, 2).value(), 1.5);
    // If the quotient were rounded towards zero, the remainder would have the sign of the dividend.
    EXPECT_EQ(ModDouble(-1, 16).value(), 15);
    EXPECT_EQ(ModDouble(1, -16).value(), -15);
    EXPECT_EQ(ModDouble(-17, -16).value(), -1);
}

TEST(ModDouble, FailsForADivisorOfZero) {
    EXPECT_EQ(ModDouble(1, 0).error().number, ErrorNumber::divisionByZero);
    EXPECT_EQ(ModDouble(0, 0).error().number, ErrorNumber::divisionByZero);
}

// Uses the largest base, so that a missing range check is noticed: characters next to the digits
// and letters in ASCII, such as ':' and '@', would get values below 36.
TEST(ConvertBase, AcceptsOnlyTheDigitsAndLettersOfBase36) {
    for (int code = 0; code < 128; ++code) {
        const bool digit = code >= '0' && code <= '9';
        const bool letter = (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z');
        const std::string one(1, static_cast<char>(code));
        EXPECT_EQ(ConvertBase(one, 36, 10) != "Error", digit || letter)
            << "character code " << code;
        EXPECT_EQ(ConvertBase("1" + one, 36, 10) != "Error", digit || letter)
            << "character code " << code;
    }
}

} // namespace
} // namespace sonarith
