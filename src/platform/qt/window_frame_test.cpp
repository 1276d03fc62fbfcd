// SPDX-License-Identifier: GPL-3.0-or-later
// Tests expectedFrame() without an X server; tests/e2e/test_windows.py runs the program with a
// window manager that adds frames.
#include "platform/qt/window_frame.h"

#include <gmock/gmock.h>

namespace sonarith {
namespace {

TEST(ExpectedFrame, IsUnknownWithoutAnXServer) {
    EXPECT_EQ(expectedFrame(), QSize(0, 0));
}

} // namespace
} // namespace sonarith
