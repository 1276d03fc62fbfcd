// SPDX-License-Identifier: GPL-3.0-or-later
// What can be said of a drive on a machine that has none.
#include "platform/linux/disc/optical_drive.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

class NoDrive : public testing::TestWithParam<const char*> {};

// The library opens the second of them without complaint.
INSTANTIATE_TEST_SUITE_P(OpticalDrive, NoDrive,
                         testing::Values("/dev/no-such-drive", "/dev/null", "/tmp", ""));

TEST_P(NoDrive, SaysInWordsWhyItCannotBeRead) {
    OpticalDrive drive(GetParam());
    const Loaded loaded = drive.load();
    EXPECT_EQ(loaded.disc, nullptr);
    EXPECT_THAT(loaded.problem, testing::HasSubstr(GetParam()));
    EXPECT_THAT(loaded.problem, testing::AnyOf(testing::HasSubstr("no drive at"),
                                               testing::HasSubstr("not an optical drive")));
}

TEST_P(NoDrive, HoldsNoDiscAndPassesOverItsTray) {
    OpticalDrive drive(GetParam());
    EXPECT_FALSE(drive.mediaPresent());
    drive.openTray();
    drive.closeTray();
    EXPECT_FALSE(drive.mediaPresent());
}

} // namespace
} // namespace sonarith::disc
