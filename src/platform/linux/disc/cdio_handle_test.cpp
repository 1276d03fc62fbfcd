// SPDX-License-Identifier: GPL-3.0-or-later
// Tests handles without a disc. paranoia_sectors_test.cpp tests rawTocOf() with a disc image.
#include "platform/linux/disc/cdio_handle.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

TEST(CdioHandle, IsEmptyForAMissingDevice) {
    EXPECT_FALSE(openCdio("/dev/no-such-drive"));
}

// Two threads that log at the same time would end the process, so the log must stay disabled.
TEST(CdioHandle, KeepsTheLibrarysLogSilent) {
    EXPECT_FALSE(openCdio("/dev/no-such-drive"));
    static int messages = 0;
    const auto before = cdio_log_set_handler([](cdio_log_level_t, const char*) { ++messages; });
    auto* const log = reinterpret_cast<void (*)(cdio_log_level_t, const char*, ...)>(
        cdioLibrary.symbol("cdio_log"));
    for (const auto level :
         {CDIO_LOG_DEBUG, CDIO_LOG_INFO, CDIO_LOG_WARN, CDIO_LOG_ERROR, CDIO_LOG_ASSERT}) {
        log(level, "message");
    }
    EXPECT_FALSE(openCdio("/dev/no-such-drive"));
    cdio_log_set_handler(before);
    EXPECT_EQ(messages, 0);
}

TEST(CdioHandle, FindsNoTableInAFileThatIsNotADrive) {
    const CdioHandle cdio = openCdio("/dev/null"); // opens, but must not count as a drive
    ASSERT_TRUE(cdio);
    EXPECT_EQ(rawTocOf(cdio.get()), RawToc{});
}

} // namespace
} // namespace sonarith::disc
