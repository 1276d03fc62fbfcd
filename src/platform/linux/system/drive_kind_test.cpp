// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/system/drive_kind.h"

#include <gtest/gtest.h>

#include "platform/linux/system/sys_fixture.h"

namespace sonarith::system_information {
namespace {

class DriveKindTest : public ::testing::Test {
  protected:
    DriveKindTest() {
        sys.addDisk("vda", "254:0");
        sys.addDisk("sda", "8:0", RemovableFlag::set);
        sys.addPartition("sda", "sda1", "8:1");
        sys.addDisk("sdb", "8:16");
        sys.addPartition("sdb", "sdb1", "8:17");
        sys.addDisk("sr0", "11:0", RemovableFlag::set);
        sys.addDisk("ram0", "1:0");
        sys.addDisk("zram1", "252:1");
        sys.addDisk("loop3", "7:3");
        sys.addDisk("dm-0", "253:0");
        sys.addSlave("dm-0", "sda1");
        sys.addDisk("dm-1", "253:1");
        sys.addSlave("dm-1", "sdb1");
        sys.addDisk("dm-2", "253:2");
        sys.addSlave("dm-2", "dm-0");
    }
    DriveKind kindOf(const std::string& type, const std::string& device,
                     const std::string& source = "none") {
        return driveKindOf({"/mnt", type, false, device, source}, devices);
    }

    FakeSys sys;
    BlockDevices devices{sys.sys(), sys.disks()};
};

TEST_F(DriveKindTest, OfAnInternalDiskIsFixed) {
    EXPECT_EQ(kindOf("ext4", "254:0", "/dev/vda"), DriveKind::fixed);
    EXPECT_EQ(kindOf("xfs", "8:17", "/dev/root"), DriveKind::fixed);
    EXPECT_EQ(kindOf("ext4", "7:3", "/dev/loop3"), DriveKind::fixed); // a mounted file
}

TEST_F(DriveKindTest, FollowsTheKernelsRemovableFlagOfTheWholeDisk) {
    EXPECT_EQ(kindOf("vfat", "8:0"), DriveKind::removable);
    EXPECT_EQ(kindOf("vfat", "8:1"), DriveKind::removable);
    EXPECT_EQ(kindOf("fuseblk", "8:1"), DriveKind::removable);
    EXPECT_EQ(kindOf("udf", "8:1"), DriveKind::removable); // a stick formatted like a disc
}

TEST_F(DriveKindTest, FollowsTheRemovableFlagThroughMappedDevices) {
    EXPECT_EQ(kindOf("ext4", "253:0"), DriveKind::removable);
    EXPECT_EQ(kindOf("ext4", "253:1"), DriveKind::fixed);
    EXPECT_EQ(kindOf("ext4", "253:2"), DriveKind::removable);
}

TEST_F(DriveKindTest, ToleratesACycleOfMappedDevices) {
    sys.addDisk("dm-8", "253:8");
    sys.addDisk("dm-9", "253:9");
    sys.addSlave("dm-8", "dm-9");
    sys.addSlave("dm-9", "dm-8");
    EXPECT_EQ(kindOf("ext4", "253:8"), DriveKind::fixed);
}

TEST_F(DriveKindTest, IsTheKindOfTheSourceIfTheDeviceNumberIsUnknown) {
    std::filesystem::create_directories(sys / "dev");
    // A source below /dev that does not exist is ignored.
    EXPECT_EQ(kindOf("btrfs", "0:42", "/dev/no-such-disk"), DriveKind::fixed);
    EXPECT_EQ(kindOf("btrfs", "0:42", "/dev/sda1"), DriveKind::removable);
    EXPECT_EQ(kindOf("btrfs", "0:42", "/dev/sdb1"), DriveKind::fixed);
}

TEST_F(DriveKindTest, OfDiscsAndTheirImagesIsCdRom) {
    EXPECT_EQ(kindOf("iso9660", "11:0"), DriveKind::cdRom);
    EXPECT_EQ(kindOf("udf", "11:0"), DriveKind::cdRom);
    EXPECT_EQ(kindOf("iso9660", "7:3"), DriveKind::cdRom);
    // The number of an optical drive begins with "11:", not with "111:".
    EXPECT_EQ(kindOf("ext4", "111:0"), DriveKind::fixed);
}

TEST_F(DriveKindTest, OfABlockDeviceInMemoryIsRamDisk) {
    EXPECT_EQ(kindOf("ext2", "1:0"), DriveKind::ramDisk);
    EXPECT_EQ(kindOf("ext4", "252:1"), DriveKind::ramDisk);
}

TEST_F(DriveKindTest, OfATmpfsIsFixedSoThatItsSpaceIsMonitored) {
    EXPECT_EQ(kindOf("tmpfs", "0:23", "tmpfs"), DriveKind::fixed);
}

TEST_F(DriveKindTest, OfAServersFolderIsNetwork) {
    for (const char* type :
         {"nfs", "nfs4", "cifs", "smb3", "9p", "ceph", "virtiofs", "fuse.sshfs", "fuse.rclone",
          "fuse.gvfsd-fuse", "fuse.davfs2", "glusterfs", "webdavfs.fuse"}) {
        // "webdavfs.fuse" is not a known type, and the source "none" contains no host.
        const bool known = std::string(type) != "webdavfs.fuse";
        EXPECT_EQ(kindOf(type, "0:50"), known ? DriveKind::network : DriveKind::fixed) << type;
    }
    // Types that are not known, but with sources that contain a host.
    EXPECT_EQ(kindOf("fuse", "0:50", "https://host/dav"), DriveKind::network);
    EXPECT_EQ(kindOf("newfs", "0:50", "host:/folder"), DriveKind::network);
    EXPECT_EQ(kindOf("newfs", "0:50", "//host/share"), DriveKind::network);
}

TEST_F(DriveKindTest, OfALocalFileSystemWithoutABlockDeviceIsFixed) {
    for (const char* type : {"fuse.mergerfs", "fuse.gocryptfs", "overlay", "zfs", "fuse"}) {
        EXPECT_EQ(kindOf(type, "0:50", "pool/music"), DriveKind::fixed) << type;
    }
}

TEST_F(DriveKindTest, IsFixedIfTheKernelHasNoInformation) {
    const BlockDevices nothing("/no/sys", "/no/disk");
    EXPECT_EQ(driveKindOf({"/mnt", "ext4", false, "8:1", "/dev/sda1"}, nothing), DriveKind::fixed);
}

// --- labels and UUIDs ----------------------------------------------------------------------------

using BlockDevicesTest = DriveKindTest;

TEST_F(BlockDevicesTest, LabelAndUuidAreReadFromTheDeviceManagersLinks) {
    sys.addLink("by-label", "MY\\x20STICK", "sda1");
    sys.addLink("by-label", "OTHER", "sdb1");
    sys.addLink("by-uuid", "1A2B-3C4D", "sda1");
    EXPECT_EQ(devices.label("sda1"), "MY STICK");
    EXPECT_EQ(devices.uuid("sda1"), "1A2B-3C4D");
    EXPECT_EQ(devices.uuid("sdb1"), "");
    EXPECT_EQ(BlockDevices("/no/sys", "/no/disk").label("sda1"), "");
}

TEST_F(BlockDevicesTest, NamesOfLinksAreUnescaped) {
    EXPECT_EQ(plainDiskName("a\\x20b\\x2fc"), "a b/c");
    EXPECT_EQ(plainDiskName("\\xc3\\xa9"), "é");
    for (const char* text : {"", "\\", "\\x", "\\x2", "\\xzz", "\\x-1", "plain"}) {
        EXPECT_EQ(plainDiskName(text), text);
    }
}

} // namespace
} // namespace sonarith::system_information
