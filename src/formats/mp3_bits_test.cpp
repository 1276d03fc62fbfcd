// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/mp3_bits.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

std::string digitsOf(FourBytes bytes) {
    return BytesToBits(bytes);
}

TEST(BytesToBits, WritesElements1To4HighestBitFirst) {
    EXPECT_EQ(digitsOf({0, 0xFF, 0xFB, 0x90, 0x04}), "11111111111110111001000000000100");
    EXPECT_EQ(digitsOf({0xFF, 0x80, 0, 0, 1}), "10000000000000000000000000000001");
}

TEST(BytesToBits, DropsLeadingZeros) {
    EXPECT_EQ(digitsOf({0, 0, 0, 0, 0}), "");
    EXPECT_EQ(digitsOf({0, 0, 0, 0, 1}), "1");
    EXPECT_EQ(digitsOf({0, 0, 0x49, 0x44, 0x33}), "10010010100010000110011");
    EXPECT_EQ(digitsOf({0, 0x7F, 0, 0, 0}), "1111111000000000000000000000000");
}

TEST(BytesToBits, SetsElements1To4OfItsArgumentToZero) {
    FourBytes bytes{7, 0xFF, 0x12, 0x00, 0x9A};
    static_cast<void>(BytesToBits(bytes));
    EXPECT_EQ(bytes, (FourBytes{7, 0, 0, 0, 0}));
    EXPECT_EQ(BytesToBits(bytes), "");
}

TEST(BitsToLong, ReturnsTheValueOfBinaryDigits) {
    EXPECT_EQ(BitsToLong("").value(), 0);
    EXPECT_EQ(BitsToLong("0").value(), 0);
    EXPECT_EQ(BitsToLong("1").value(), 1);
    EXPECT_EQ(BitsToLong("1011101110000").value(), 6000);
    EXPECT_EQ(BitsToLong("0000000000000000000000000000000101").value(), 5);
    EXPECT_EQ(BitsToLong("1111111111111111111111111111111").value(), 2147483647);
}

TEST(BitsToLong, TreatsEveryCharacterOtherThanTheDigit1AsZero) {
    EXPECT_EQ(BitsToLong("1x2 1").value(), 17);
}

TEST(BitsToLong, FailsIfTheValueNeedsMoreThan31Bits) {
    EXPECT_EQ(BitsToLong("10000000000000000000000000000000").error().number, ErrorNumber::overflow);
    EXPECT_EQ(BitsToLong(std::string(1000, '1')).error().number, ErrorNumber::overflow);
}

} // namespace
} // namespace sonarith
