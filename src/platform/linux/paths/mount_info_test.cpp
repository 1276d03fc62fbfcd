// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/mount_info.h"

#include <gmock/gmock.h>

#include <fstream>

#include "support/temp_folder.h"

namespace sonarith {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ParseMountInfo, ReadsTheFieldsOfEachMount) {
    EXPECT_THAT(parseMountInfo("25 1 8:2 / / rw,relatime shared:1 - ext4 /dev/sda2 rw\n"
                               "30 25 8:3 / /home rw - xfs /dev/sda3 rw\n"
                               "31 25 0:5 /@data /data rw shared:2 master:3 - btrfs /dev/sdb rw\n"),
                ElementsAre(MountPoint{"/", "ext4", false, "8:2", "/dev/sda2"},
                            MountPoint{"/home", "xfs", false, "8:3", "/dev/sda3"},
                            MountPoint{"/data", "btrfs", true, "0:5", "/dev/sdb"}));
}

TEST(ParseMountInfo, DecodesTheKernelsOctalEscapes) {
    EXPECT_THAT(
        parseMountInfo(
            "30 25 0:9 / /media/My\\040Disk\\011a\\134b rw - cifs //host/My\\040Disk rw\n"
            "31 25 0:10 / /media/none rw - fuse\n"),
        ElementsAre(MountPoint{"/media/My Disk\ta\\b", "cifs", false, "0:9", "//host/My Disk"},
                    MountPoint{"/media/none", "fuse", false, "0:10", ""}));
}

TEST(ParseMountInfo, ReturnsOnlyTheLastOfSeveralMountsOnTheSameMountPoint) {
    EXPECT_THAT(parseMountInfo("30 25 8:3 / /mnt rw - autofs systemd-1 rw\n"
                               "31 30 8:4 / /mnt rw - ext4 /dev/sdb1 rw\n"),
                ElementsAre(MountPoint{"/mnt", "ext4", false, "8:4", "/dev/sdb1"}));
}

TEST(ParseMountInfo, SkipsLinesInAnotherFormat) {
    EXPECT_THAT(parseMountInfo(""), IsEmpty());
    EXPECT_THAT(parseMountInfo("garbage\n\n1 2 3\n30 25 8:3 / home rw - ext4 x rw\n"
                               "30 25 8:3 / /home rw shared:1\n30 25 8:3 / /home rw -\n"),
                IsEmpty());
}

TEST(HoldsUserFiles, AcceptsDisksAndNetworkFoldersAndATmpfsOnTmp) {
    for (const char* type : {"ext4", "xfs", "btrfs", "vfat", "ntfs3", "nfs4", "cifs", "fuseblk"}) {
        EXPECT_TRUE(holdsUserFiles({"/media/disk", type})) << type;
    }
    EXPECT_TRUE(holdsUserFiles({"/run/media/me/STICK", "vfat"}));
    EXPECT_TRUE(holdsUserFiles({"/tmp", "tmpfs"}));
}

TEST(HoldsUserFiles, RejectsKernelInterfacesAndSquashfsPackagesAndATmpfsBelowRunOrDev) {
    for (const char* type : {"proc", "sysfs", "cgroup2", "devtmpfs", "devpts", "squashfs"}) {
        EXPECT_FALSE(holdsUserFiles({"/somewhere", type})) << type;
    }
    EXPECT_FALSE(holdsUserFiles({"/run/user/1000", "tmpfs"}));
    EXPECT_FALSE(holdsUserFiles({"/dev/shm", "tmpfs"}));
    EXPECT_TRUE(holdsUserFiles({"/runs", "tmpfs"}));
}

TEST(MountInfo, ReturnsNothingAtTheSecondCallIfNoMountHasChanged) {
    MountInfo mounts;
    EXPECT_TRUE(mounts.changed().has_value());
    EXPECT_FALSE(mounts.changed().has_value());
}

TEST(MountInfo, OmitsPartialMountsOfSingleFiles) {
    const fakes::TempFolder folder;
    std::filesystem::create_directory(folder / "part");
    std::ofstream(folder / "file") << "x";
    std::ofstream(folder / "info")
        << "1 0 8:1 /a " << (folder / "part").string() << " rw - ext4 /dev/x rw\n"
        << "2 0 8:1 /b " << (folder / "file").string() << " rw - ext4 /dev/x rw\n"
        << "3 0 8:1 / /gone rw - nfs server:/ rw\n"
        << "4 0 0:1 / /proc rw - proc proc rw\n";
    MountInfo mounts((folder / "info").string());
    EXPECT_EQ(mounts.changed(),
              (std::vector<MountPoint>{{(folder / "part").string(), "ext4", true, "8:1", "/dev/x"},
                                       {"/gone", "nfs", false, "8:1", "server:/"}}));
}

// A server's folder may be a partial mount, and an access would hang if the server did not respond.
// The mount points here do not exist: an access would fail, and the mount would be omitted. So the
// returned mounts were not accessed.
TEST(MountInfo, DoesNotAccessPartialMountsThatMayBeOnAServer) {
    const fakes::TempFolder folder;
    std::ofstream(folder / "info") << "1 0 0:40 /jane /gone/jane rw - nfs4 server:/home rw\n"
                                   << "2 0 0:41 /b /gone/ssh rw - fuse.sshfs server: rw\n"
                                   << "3 0 8:1 /b /gone/disk rw - ext4 /dev/x rw\n";
    MountInfo mounts((folder / "info").string());
    EXPECT_EQ(mounts.changed(),
              (std::vector<MountPoint>{{"/gone/jane", "nfs4", true, "0:40", "server:/home"},
                                       {"/gone/ssh", "fuse.sshfs", true, "0:41", "server:"}}));
}

TEST(MountInfo, TheFunctionAllChangedReturnsAllMountsWithoutAccessingThem) {
    const fakes::TempFolder folder;
    std::ofstream(folder / "info") << "1 0 0:30 / / rw - overlay overlay rw\n"
                                   << "2 0 8:1 /b /gone/disk rw - ext4 /dev/x rw\n"
                                   << "3 0 0:1 / /proc rw - proc proc rw\n";
    MountInfo mounts((folder / "info").string());
    const auto all = mounts.allChanged();
    ASSERT_TRUE(all.has_value());
    EXPECT_EQ(all->size(), 3U);
    EXPECT_FALSE(mounts.allChanged().has_value());
}

TEST(MountInfo, ReturnsNoMountsIfTheKernelsListIsMissing) {
    MountInfo mounts("/no/such/list");
    EXPECT_EQ(mounts.changed(), std::vector<MountPoint>());
    EXPECT_FALSE(mounts.changed().has_value());
}

} // namespace
} // namespace sonarith
