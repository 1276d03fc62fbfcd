// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/drive_status.h"

#include <cerrno>

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(DriveStatus, TellsAMissingDeviceFromSomethingThatIsNoDrive) {
    const DriveStatus missing = statusOf("/dev/no-such-drive");
    EXPECT_EQ(missing.state, DriveState::unreachable);
    EXPECT_EQ(problemOf("/dev/no-such-drive", missing.error),
              "There is no drive at /dev/no-such-drive.");
    const DriveStatus noDrive = statusOf("/dev/null");
    EXPECT_EQ(noDrive.state, DriveState::unreachable);
    EXPECT_EQ(problemOf("/dev/null", noDrive.error), "/dev/null is not an optical drive.");
}

TEST(DriveStatus, NamesTheGroupWhenPermissionIsMissing) {
    EXPECT_THAT(problemOf("/dev/sr0", EACCES), HasSubstr("\"cdrom\""));
    EXPECT_THAT(problemOf("/dev/sr0", EIO), StartsWith("The drive /dev/sr0 cannot be used: "));
}

TEST(DriveStatus, ReadsTheKernelsListInTheOrderOfTheNumbers) {
    const char* const text = "CD-ROM information, Id: cdrom.c 3.20 2003/12/17\n\n"
                             "drive name:\t\tsr10\tsr1\tsr0\n"
                             "drive speed:\t\t48\t24\t24\n";
    EXPECT_THAT(driveNames(text), ElementsAre("sr0", "sr1", "sr10"));
}

TEST(DriveStatus, FindsNoDrivesInALineOrTextWithoutAny) {
    EXPECT_THAT(driveNames("CD-ROM information\n\ndrive name:\t\n\ndrive speed:\t\n"), IsEmpty());
    EXPECT_THAT(driveNames("drive name:"), IsEmpty());
    EXPECT_THAT(driveNames(""), IsEmpty());
}

TEST(DriveStatus, ListsTheDevicesOfTheKernelsListThatAreThere) {
    const auto isThere = [](const std::string& device) {
        return device != "/dev/sr1";
    };
    EXPECT_THAT(driveDevices("drive name:\t\tsr2\tsr1\tsr0\n", isThere),
                ElementsAre("/dev/sr0", "/dev/sr2"));
    EXPECT_THAT(driveDevices("drive name:\t\tsr1\n", isThere), IsEmpty());
}

} // namespace
} // namespace sonarith::disc
