// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/files/file_error.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace sonarith::files {
namespace {

using testing::HasSubstr;

TEST(SystemError, SaysInWordsWhatIsWrong) {
    EXPECT_EQ(systemError(ENOSPC, "/a/b").text, "\"/a/b\" does not fit: the disk is full");
    EXPECT_EQ(systemError(EROFS, "/a").number, ErrorNumber::permissionDenied);
    EXPECT_EQ(systemError(EIO, "/a").number, ErrorNumber::deviceInputOutput);
    EXPECT_THAT(systemError(EIO, "/a").text, HasSubstr("failed: "));
}

} // namespace
} // namespace sonarith::files
