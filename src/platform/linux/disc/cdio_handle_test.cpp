// SPDX-License-Identifier: GPL-3.0-or-later
// Tables of real images are read in paranoia_sectors_test.cpp.
#include "platform/linux/disc/cdio_handle.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

TEST(CdioHandle, IsEmptyForAMissingDevice) {
    EXPECT_FALSE(openCdio("/dev/no-such-drive"));
}

TEST(CdioHandle, FindsNoTableInSomethingThatIsNoDrive) {
    const CdioHandle cdio = openCdio("/dev/null"); // opens, but must not count as a drive
    ASSERT_TRUE(cdio);
    EXPECT_EQ(rawTocOf(cdio.get()), RawToc{});
}

} // namespace
} // namespace sonarith::disc
