// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop tests read the frame of a real window manager: tests/e2e/test_windows.py.
#include "platform/qt/window_frame.h"

#include <gmock/gmock.h>

namespace sonarith {
namespace {

TEST(ExpectedFrame, IsUnknownWithoutAnXServer) {
    EXPECT_EQ(expectedFrame(), QSize(0, 0));
}

} // namespace
} // namespace sonarith
