// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the size of the frame without an X server; tests/e2e/test_windows.py tests it with a real
// window manager.
#include "platform/qt/window_frame.h"

#include <gmock/gmock.h>

namespace sonarith {
namespace {

TEST(ExpectedFrame, IsUnknownWithoutAnXServer) {
    EXPECT_EQ(expectedFrame(), QSize(0, 0));
}

} // namespace
} // namespace sonarith
