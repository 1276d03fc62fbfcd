// SPDX-License-Identifier: GPL-3.0-or-later
// Reads what the kernel and the device manager report about the block device of a mount. It opens
// no device, so it neither waits for a hanging device nor wakes a sleeping one.
#pragma once

#include <optional>
#include <string>

#include "platform/linux/paths/mount_info.h"

namespace sonarith::system_information {

class BlockDevices {
  public:
    /// `sys` is a folder with the layout of /sys, `disks` a folder with the layout of /dev/disk.
    BlockDevices(std::string sys, std::string disks)
        : sys_(std::move(sys)), disks_(std::move(disks)) {}

    /// The kernel's name of the device ("sda1", "dm-0"); empty for a mount without a block device.
    [[nodiscard]] std::optional<std::string> nameOf(const MountPoint& mount) const;
    /// The kernel's removable flag. For a partition, this is the flag of the whole disk. For a
    /// mapped device (encryption, volumes), it is true if a disk under that device is removable.
    [[nodiscard]] bool isRemovable(const std::string& name) const;

    /// The file system's label; empty if it has none.
    [[nodiscard]] std::string label(const std::string& name) const;
    /// The file system's UUID as text; empty if it has none.
    [[nodiscard]] std::string uuid(const std::string& name) const;

  private:
    [[nodiscard]] bool isRemovable(const std::string& name, int depth) const;
    [[nodiscard]] std::string linkTo(const std::string& name, const std::string& folder) const;

    std::string sys_;
    std::string disks_;
};

/// Decodes a name below /dev/disk: the device manager writes special bytes in hexadecimal, a space
/// as \x20.
[[nodiscard]] std::string plainDiskName(const std::string& text);

} // namespace sonarith::system_information
