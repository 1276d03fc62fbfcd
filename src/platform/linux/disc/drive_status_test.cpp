// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/drive_status.h"

#include <cerrno>
#include <climits>

#include <linux/cdrom.h>

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(DriveStatus, DistinguishesAMissingDeviceFromADeviceThatIsNotADrive) {
    const DriveStatus missing = statusOf("/dev/no-such-drive");
    EXPECT_EQ(missing.state, DriveState::unreachable);
    EXPECT_EQ(problemOf("/dev/no-such-drive", missing.error).text,
              "The drive /dev/no-such-drive does not exist.");
    const DriveStatus noDrive = statusOf("/dev/null");
    EXPECT_EQ(noDrive.state, DriveState::unreachable);
    EXPECT_EQ(problemOf("/dev/null", noDrive.error).text, "/dev/null is not an optical drive.");
}

TEST(DriveStatus, ReportsTheKindOfAProblemAndTheNameOfTheDrive) {
    constexpr struct {
        int error;
        DeviceProblem kind;
        const char* words;
    } rows[] = {
        {ENOENT, DeviceProblem::missing, "does not exist"},
        {ENODEV, DeviceProblem::missing, "does not exist"},
        {ENXIO, DeviceProblem::missing, "does not exist"},
        {ENOTTY, DeviceProblem::missing, "not an optical drive"},
        {EINVAL, DeviceProblem::missing, "not an optical drive"},
        {EISDIR, DeviceProblem::missing, "not an optical drive"},
        {EACCES, DeviceProblem::noPermission, "group \"cdrom\""},
        {EPERM, DeviceProblem::noPermission, "group \"cdrom\""},
        {EBUSY, DeviceProblem::busy, "used by another program"},
        {EIO, DeviceProblem::unreadable, "cannot be used: "},
        {0, DeviceProblem::unreadable, "cannot be used: "},
    };
    for (const auto& row : rows) {
        const DriveReport report = problemOf("/dev/sr0", row.error);
        EXPECT_EQ(report.kind, row.kind) << row.error;
        EXPECT_THAT(report.text, HasSubstr(row.words)) << row.error;
        EXPECT_THAT(report.text, HasSubstr("/dev/sr0")) << row.error;
    }
}

TEST(DriveStatus, MapsEachReplyOfTheKernelToAState) {
    constexpr struct {
        int reply;
        int error;
        DriveState state;
    } rows[] = {
        {CDS_DISC_OK, 0, DriveState::loaded},     {CDS_NO_DISC, 0, DriveState::empty},
        {CDS_TRAY_OPEN, 0, DriveState::trayOpen}, {CDS_DRIVE_NOT_READY, 0, DriveState::notReady},
        {CDS_NO_INFO, 0, DriveState::unknown},    {-1, ENOSYS, DriveState::unknown},
        {-1, ENOMEDIUM, DriveState::unreachable},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(statusOfReply(row.reply, row.error).state, row.state) << row.reply;
    }
    EXPECT_EQ(statusOfReply(-1, EACCES).error, EACCES);
}

TEST(DriveStatus, OrdersTheDrivesOfTheKernelsListByNumber) {
    const char* const text = "CD-ROM information, Id: cdrom.c 3.20 2003/12/17\n\n"
                             "drive name:\t\tsr10\tsr1\tsr0\n"
                             "drive speed:\t\t48\t24\t24\n";
    EXPECT_THAT(driveNames(text), ElementsAre("sr0", "sr1", "sr10"));
}

TEST(DriveStatus, FindsNoDrivesIfTheKernelsListIsEmptyOrMissing) {
    EXPECT_THAT(driveNames("CD-ROM information\n\ndrive name:\t\n\ndrive speed:\t\n"), IsEmpty());
    EXPECT_THAT(driveNames("drive name:"), IsEmpty());
    EXPECT_THAT(driveNames(""), IsEmpty());
}

TEST(DriveStatus, ListsTheExistingDevicesOfTheKernelsList) {
    const auto exists = [](const std::string& device) {
        return device != "/dev/sr1";
    };
    EXPECT_THAT(driveDevices("drive name:\t\tsr2\tsr1\tsr0\n", exists),
                ElementsAre("/dev/sr0", "/dev/sr2"));
    EXPECT_THAT(driveDevices("drive name:\t\tsr1\n", exists), IsEmpty());
}

} // namespace
} // namespace sonarith::disc
