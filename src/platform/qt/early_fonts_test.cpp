// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/early_fonts.h"

#include <fontconfig/fontconfig.h>
#include <gmock/gmock.h>

#include "support/limited_threads.h"

namespace sonarith {
namespace {

TEST(EarlyFonts, ReadTheConfigurationThatTheLibraryThenUses) {
    { const EarlyFonts fonts; }
    FcConfig* const read = FcConfigGetCurrent();
    ASSERT_NE(read, nullptr);
    EXPECT_TRUE(FcInit());
    EXPECT_EQ(FcConfigGetCurrent(), read);
}

TEST(EarlyFonts, LeaveReadingToTheLibraryIfNoThreadCanBeCreated) {
    const fakes::LimitedThreads threads(0);
    { const EarlyFonts fonts(threads.starter()); }
    EXPECT_EQ(threads.refused(), 1);
    EXPECT_TRUE(FcInit());
}

} // namespace
} // namespace sonarith
