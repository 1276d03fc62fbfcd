// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/primary_screen.h"

#include <QGuiApplication>
#include <QScreen>
#include <gmock/gmock.h>

namespace sonarith {
namespace {

TEST(PrimaryScreen, HasThePositionAndSizeThatQtReports) {
    ASSERT_FALSE(primaryScreen().isEmpty());
    EXPECT_EQ(primaryScreen(), QGuiApplication::primaryScreen()->geometry());
}

} // namespace
} // namespace sonarith
