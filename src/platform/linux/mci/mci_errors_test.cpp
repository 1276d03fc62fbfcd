// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/mci_errors.h"

#include <gmock/gmock.h>

namespace sonarith::mci {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

TEST(MciErrorTexts, DescribeTheError) {
    EXPECT_THAT(std::string(errorText(261)), HasSubstr("command"));
    EXPECT_THAT(std::string(errorText(263)), HasSubstr("not open"));
    EXPECT_THAT(std::string(errorText(289)), HasSubstr("alias"));
    EXPECT_THAT(std::string(errorText(306)), HasSubstr("not installed"));
    EXPECT_THAT(std::string(errorText(512)), HasSubstr("data"));
}

TEST(MciErrorTexts, AreEmptyForSuccessAndForUnknownNumbers) {
    for (const int status : {0, -1, 1, 255, 256, 258, 2147483647}) {
        EXPECT_THAT(std::string(errorText(status)), IsEmpty()) << status;
    }
}

TEST(MciErrorTexts, AreSentencesAndDifferFromOneAnother) {
    std::vector<std::string> seen;
    for (int status = 0; status < 1024; ++status) {
        const std::string text(errorText(status));
        if (!text.empty()) {
            EXPECT_EQ(text.back(), '.') << status;
            EXPECT_THAT(seen, testing::Not(testing::Contains(text)));
            seen.push_back(text);
        }
    }
    EXPECT_EQ(seen.size(), 32U);
}

TEST(AnOutcome, IsAValueOrAnErrorNumber) {
    const Outcome<int> value(7);
    const Outcome<int> error(MciError::badInteger);
    EXPECT_TRUE(value.ok());
    EXPECT_EQ(value.value, 7);
    EXPECT_FALSE(error.ok());
    EXPECT_EQ(error.error, MciError::badInteger);
}

} // namespace
} // namespace sonarith::mci
