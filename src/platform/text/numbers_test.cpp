// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/numbers.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace sonarith {
namespace {

TEST(NumberOf, ReadsTheNumberAtTheStartOfTheText) {
    EXPECT_EQ(numberOf("12abc"), 12);
    EXPECT_EQ(numberOf("-3.5x"), -3.5);
    EXPECT_EQ(numberOf("+7"), 7);
    EXPECT_EQ(numberOf(".5"), 0.5);
    EXPECT_EQ(numberOf("5."), 5);
    EXPECT_EQ(numberOf("1.2.3"), 1.2);
}

TEST(NumberOf, SkipsBlanksTabsAndLineEndsBeforeAndInsideTheNumber) {
    EXPECT_EQ(numberOf("  12 34 Main"), 1234);
    EXPECT_EQ(numberOf("\t- 1\n2"), -12);
}

TEST(NumberOf, ReadsAnExponentThatHasDigits) {
    EXPECT_EQ(numberOf("1e3"), 1000);
    EXPECT_EQ(numberOf("1E-2x"), 0.01);
    EXPECT_EQ(numberOf("1e"), 1);
    EXPECT_EQ(numberOf("2e+"), 2);
}

TEST(NumberOf, IsZeroIfTheTextDoesNotStartWithANumber) {
    EXPECT_EQ(numberOf(""), 0);
    EXPECT_EQ(numberOf("abc12"), 0);
    EXPECT_EQ(numberOf("-"), 0);
    EXPECT_EQ(numberOf("."), 0);
    EXPECT_EQ(numberOf("inf"), 0);
    EXPECT_EQ(numberOf("nan"), 0);
    EXPECT_EQ(numberOf(std::string_view("\0"
                                        "12",
                                        3)),
              0);
}

TEST(NumberOf, IsZeroForANumberThatIsTooLargeForADouble) {
    EXPECT_EQ(numberOf("1e999"), 0);
    EXPECT_EQ(numberOf(std::string(100000, '9')), 0);
}

TEST(ToDouble, RequiresTheWholeTextToBeANumber) {
    EXPECT_EQ(toDouble(" 1.5 ").value(), 1.5);
    EXPECT_EQ(toDouble("-2e2").value(), -200);
    for (const char* text :
         {"", "  ", "12abc", "1 2", "0x10", "inf", "nan", "1e", "--1", ".", "+"}) {
        ASSERT_FALSE(toDouble(text).ok()) << text;
        EXPECT_EQ(toDouble(text).error().number, ErrorNumber::typeMismatch) << text;
    }
}

TEST(ToDouble, OverflowsForTooLargeNumbersAndReturnsZeroForNumbersTooCloseToZero) {
    EXPECT_EQ(toDouble("1e999").error().number, ErrorNumber::overflow);
    EXPECT_EQ(toDouble("-1e999").error().number, ErrorNumber::overflow);
    EXPECT_EQ(toDouble("1e-999").value(), 0);
    EXPECT_EQ(toDouble("0." + std::string(500, '0') + "1").value(), 0);
    EXPECT_EQ(toDouble(std::string(500, '9') + "e-1").error().number, ErrorNumber::overflow);
    EXPECT_EQ(toDouble("0." + std::string(500, '0') + "1e900").error().number,
              ErrorNumber::overflow);
    EXPECT_EQ(toDouble("1e-99999999999999999999999").value(), 0);
    EXPECT_EQ(toDouble("1e99999999999999999999999").error().number, ErrorNumber::overflow);
    EXPECT_EQ(toDouble("0e999").value(), 0);
    EXPECT_EQ(toDouble(std::string(500, '9')).error().number, ErrorNumber::overflow);
    EXPECT_EQ(toDouble(std::string(500, '9') + ".5").error().number, ErrorNumber::overflow);
}

TEST(ToInteger16, RoundsHalvesToTheEvenInteger) {
    EXPECT_EQ(toInteger16("0.5").value(), 0);
    EXPECT_EQ(toInteger16("1.5").value(), 2);
    EXPECT_EQ(toInteger16("2.5").value(), 2);
    EXPECT_EQ(toInteger16("-1.5").value(), -2);
    EXPECT_EQ(toInteger16(" 100 ").value(), 100);
}

TEST(ToInteger16, OverflowsIfTheRoundedNumberDoesNotFit) {
    EXPECT_EQ(toInteger16("32767.4").value(), 32767);
    EXPECT_EQ(toInteger16("-32768.5").value(), -32768);
    for (const char* text : {"32767.5", "70000", "-32769", "1e300"}) {
        ASSERT_FALSE(toInteger16(text).ok()) << text;
        EXPECT_EQ(toInteger16(text).error().number, ErrorNumber::overflow) << text;
    }
}

TEST(ToInteger16, ReportsATypeMismatchForATextThatIsNoNumber) {
    EXPECT_EQ(toInteger16("1o0").error().number, ErrorNumber::typeMismatch);
    EXPECT_EQ(toInteger16("").error().number, ErrorNumber::typeMismatch);
}

TEST(ToInteger32, OverflowsOnlyIfTheRoundedNumberDoesNotFit) {
    EXPECT_EQ(toInteger32("2147483647").value(), 2147483647);
    EXPECT_EQ(toInteger32("-2147483648").value(), -2147483648);
    EXPECT_EQ(toInteger32("2147483647.5").error().number, ErrorNumber::overflow);
    EXPECT_EQ(toInteger32("2147483648").error().number, ErrorNumber::overflow);
}

TEST(RoundedToInteger16, RoundsHalvesToEvenAndReportsAnOverflow) {
    EXPECT_EQ(roundedToInteger16(12.5).value(), 12);
    EXPECT_EQ(roundedToInteger16(37.5).value(), 38);
    EXPECT_EQ(roundedToInteger16(-32768.5).value(), -32768);
    EXPECT_EQ(roundedToInteger16(32767.5).error().number, ErrorNumber::overflow);
    EXPECT_EQ(roundedToInteger16(-32769.0).error().number, ErrorNumber::overflow);
}

TEST(RoundedToInteger16, OverflowsForInfinityAndNaN) {
    EXPECT_EQ(roundedToInteger16(std::numeric_limits<double>::infinity()).error().number,
              ErrorNumber::overflow);
    EXPECT_EQ(roundedToInteger16(std::numeric_limits<double>::quiet_NaN()).error().number,
              ErrorNumber::overflow);
}

TEST(RoundedToInteger32, RoundsHalvesToEvenAndReportsAnOverflow) {
    EXPECT_EQ(roundedToInteger32(2.5).value(), 2);
    EXPECT_EQ(roundedToInteger32(1e10).error().number, ErrorNumber::overflow);
    EXPECT_EQ(roundedToInteger32(std::numeric_limits<double>::quiet_NaN()).error().number,
              ErrorNumber::overflow);
}

TEST(RightAligned, FillsTheFieldWithBlanksOnTheLeft) {
    EXPECT_EQ(rightAligned("3", 2), " 3");
    EXPECT_EQ(rightAligned("12", 2), "12");
    EXPECT_EQ(rightAligned("", 2), "  ");
}

TEST(RightAligned, KeepsTheFirstCharactersOfATextThatIsTooLong) {
    EXPECT_EQ(rightAligned("123", 2), "12");
    EXPECT_EQ(rightAligned("123", 0), "");
}

} // namespace
} // namespace sonarith
