// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/toc_mode.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

TEST(TocMode, HasAKindAndASectorSize) {
    const TocMode* const audio = tocModeNamed("audio");
    ASSERT_NE(audio, nullptr);
    EXPECT_EQ(audio->kind, TrackKind::audio);
    EXPECT_EQ(audio->sectorBytes, 2352);
    const TocMode* const form2 = tocModeNamed("MODE2_FORM2");
    ASSERT_NE(form2, nullptr);
    EXPECT_EQ(form2->kind, TrackKind::data);
    EXPECT_EQ(form2->sectorBytes, 2324);
}

TEST(TocMode, IsNullForAnUnknownName) {
    EXPECT_EQ(tocModeNamed("MODE3"), nullptr);
    EXPECT_EQ(tocModeNamed("MODE"), nullptr);
    EXPECT_EQ(tocModeNamed(""), nullptr);
}

} // namespace
} // namespace sonarith::disc
