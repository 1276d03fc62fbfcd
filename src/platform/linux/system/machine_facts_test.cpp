// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/system/machine_facts.h"

#include <gtest/gtest.h>

#include <string>

namespace sonarith::system_information {
namespace {

TEST(MemoryIn, ReadsTotalAndAvailableMemory) {
    const MemoryStatus status = memoryIn("MemTotal:       16000000 kB\n"
                                         "MemFree:          100000 kB\n"
                                         "MemAvailable:    4000000 kB\n");
    EXPECT_EQ(status.totalBytes, 16'384'000'000);
    EXPECT_EQ(status.availableBytes, 4'096'000'000);
    EXPECT_EQ(status.loadPercent, 75);
}

TEST(MemoryIn, IsZeroForATextWithoutAValidTotal) {
    for (const char* text : {"", "MemTotal", "MemTotal: x kB\n", "\n\n", "MemTotal: 0 kB\n"}) {
        const MemoryStatus status = memoryIn(text);
        EXPECT_EQ(status.totalBytes, 0) << text;
        EXPECT_EQ(status.loadPercent, 0) << text;
    }
}

TEST(ProcessorsIn, CountsSingleProcessorsAndAllProcessorsOfARange) {
    EXPECT_EQ(processorsIn("0\n").count, 1);
    EXPECT_EQ(processorsIn("0\n").mask, 1U);
    EXPECT_EQ(processorsIn("0-3,5,8-9\n").count, 7);
    EXPECT_EQ(processorsIn("0-3,5,8-9\n").mask, 0x32FU);
    EXPECT_EQ(processorsIn("0-127").count, 128);
    EXPECT_EQ(processorsIn("0-127").mask, ~std::uint64_t{0});
}

TEST(ProcessorsIn, IgnoresAnInvalidPart) {
    EXPECT_EQ(processorsIn("").count, 0);
    EXPECT_EQ(processorsIn("x").count, 0);
    EXPECT_EQ(processorsIn("0-").count, 0);
    EXPECT_EQ(processorsIn("3-1").count, 0);
    EXPECT_EQ(processorsIn("0,99999999999").count, 1);
    EXPECT_EQ(processorsIn("0-99999999").count, 0);
}

// The kernel's lines for a keyboard, a power button and a mouse.
constexpr const char* keyboardKeys =
    "B: KEY=402000000 3803078f800d001 feffffdfffefffff fffffffffffffffe\n";
constexpr const char* buttonKeys = "B: KEY=10000000000000 0\n";
constexpr const char* mouseKeys = "B: KEY=1f0000 0 0 0 0\n";

TEST(KeyboardIn, CountsTheFunctionKeysOfAKeyboard) {
    const Keyboard keyboard = keyboardIn(std::string("N: Name=\"AT keyboard\"\nB: EV=120013\n") +
                                         keyboardKeys + "\n" + mouseKeys);
    EXPECT_TRUE(keyboard.present);
    EXPECT_EQ(keyboard.functionKeys, 12);
}

TEST(KeyboardIn, IgnoresButtonsAndMice) {
    EXPECT_FALSE(keyboardIn("").present);
    EXPECT_FALSE(keyboardIn(std::string(buttonKeys) + mouseKeys).present);
    EXPECT_EQ(keyboardIn(std::string(buttonKeys) + mouseKeys).functionKeys, 0);
    EXPECT_FALSE(keyboardIn("B: KEY=\nB: KEY=zz\n").present);
}

TEST(KeyboardIn, PrefersTheKeyboardWithTheMostFunctionKeys) {
    // A keyboard with the keys 3 to 60: of the function keys, it has only F1 (59) and F2 (60).
    const std::string small = "B: KEY=0 1ffffffffffffff8\n";
    EXPECT_EQ(keyboardIn(small).functionKeys, 2);
    EXPECT_EQ(keyboardIn(small + keyboardKeys + small).functionKeys, 12);
}

TEST(KeyboardIn, CountsTwelveFunctionKeysAtMost) {
    const std::string every = "B: KEY=ffffffffffffffff ffffffffffffffff ffffffffffffffff "
                              "ffffffffffffffff\n";
    EXPECT_EQ(keyboardIn(every).functionKeys, 12);
}

TEST(VersionIn, ReturnsTheFirstTwoNumbersOrNothingIfOneIsMissing) {
    const auto version = versionIn("6.1.0-32-amd64");
    ASSERT_TRUE(version.has_value());
    EXPECT_EQ(version->platform, 2);
    EXPECT_EQ(version->major, 6);
    EXPECT_EQ(version->minor, 1);
    EXPECT_EQ(versionIn("7.10-rc1")->minor, 10);
    for (const char* text : {"", "x", "6", "6.", ".1"}) {
        EXPECT_FALSE(versionIn(text).has_value()) << text;
    }
}

} // namespace
} // namespace sonarith::system_information
