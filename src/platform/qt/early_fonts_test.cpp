// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/early_fonts.h"

#include <fontconfig/fontconfig.h>
#include <gmock/gmock.h>

namespace sonarith {
namespace {

TEST(EarlyFonts, ReadTheLibrarysConfigurationOnce) {
    { const EarlyFonts fonts; }
    FcConfig* const read = FcConfigGetCurrent();
    ASSERT_NE(read, nullptr);
    EXPECT_TRUE(FcInit());
    EXPECT_EQ(FcConfigGetCurrent(), read);
}

} // namespace
} // namespace sonarith
