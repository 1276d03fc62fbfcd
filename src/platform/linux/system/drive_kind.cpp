// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/system/drive_kind.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace sonarith::system_information {

namespace {

template <std::size_t Count>
bool isOneOf(const std::array<std::string_view, Count>& types, const std::string& type) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

bool isOptical(const MountPoint& mount) {
    // 11 is the kernel's major device number of optical drives (devices.txt in its documentation).
    // Only discs and their images have the type "iso9660". The type "udf" is not checked, because
    // memory sticks may have it.
    return mount.device.starts_with("11:") || mount.fileSystemType == "iso9660";
}

/// Whether the mount is a folder of a server, or of the host of a virtual machine.
bool isRemote(const MountPoint& mount) {
    static constexpr std::array<std::string_view, 19> types = {
        "9p",     "afs",  "beegfs",    "ceph",   "cifs",    "coda", "davfs",
        "drvfs",  "gfs2", "glusterfs", "lustre", "ncpfs",   "nfs",  "nfs4",
        "prl_fs", "smb3", "smbfs",     "vboxsf", "virtiofs"};
    static constexpr std::array<std::string_view, 16> programs = {
        "fuse.afpfs",      "fuse.cephfs",   "fuse.curlftpfs",   "fuse.davfs",
        "fuse.davfs2",     "fuse.gcsfuse",  "fuse.glusterfs",   "fuse.goofys",
        "fuse.gvfsd-fuse", "fuse.kio-fuse", "fuse.rclone",      "fuse.s3fs",
        "fuse.smbnetfs",   "fuse.sshfs",    "fuse.vmhgfs-fuse", "fuse.webdavfs"};
    // Mounts of other types may name a host in their source: "//host/share", "host:/folder",
    // "https://host".
    const bool namesHost =
        mount.source.starts_with("//") || mount.source.find(":/") != std::string::npos;
    return isOneOf(types, mount.fileSystemType) || isOneOf(programs, mount.fileSystemType) ||
           namesHost;
}

} // namespace

DriveKind driveKindOf(const MountPoint& mount, const BlockDevices& devices) {
    if (isOptical(mount)) {
        return DriveKind::cdRom;
    }
    const auto device = devices.nameOf(mount);
    if (!device) {
        // The mount has no block device. For example, it is a folder of a server, a pool of disks,
        // a folder that a program encrypts, or a tmpfs. A tmpfs counts as fixed and not as a RAM
        // disk, because the logic measures the free space of fixed drives only. If the destination
        // is on a drive of another kind, the logic uses the last free space that it measured for a
        // destination. Without an earlier measurement, the logic treats the drive as full.
        return isRemote(mount) ? DriveKind::network : DriveKind::fixed;
    }
    if (device->starts_with("ram") || device->starts_with("zram")) {
        return DriveKind::ramDisk;
    }
    return devices.isRemovable(*device) ? DriveKind::removable : DriveKind::fixed;
}

} // namespace sonarith::system_information
