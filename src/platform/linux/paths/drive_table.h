// SPDX-License-Identifier: GPL-3.0-or-later
// Which drive letter stands for which mounted file system. C: is the root file system; the others
// get D: to Z: in the order in which they are first seen, and keep their letter in the settings
// store, so that a stored path means the same disk tomorrow. It translates no paths.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/paths/mount_info.h"
#include "platform/settings_store.h"

namespace sonarith {

/// The store's section with one key for each letter given; the value is the mount point.
inline constexpr const char* drivesSection = "Drives";

struct Drive {
    char letter; ///< upper case
    std::string mountPoint;

    bool operator==(const Drive&) const = default;
};

class DriveTable {
  public:
    /// Knows C: alone until update(). The store must outlive this.
    explicit DriveTable(SettingsStore& store);

    /// What is mounted now. A mount point seen for the first time gets a letter, which is stored.
    /// With all letters given, a further mount belongs to the drive that it is mounted in.
    void update(const std::vector<MountPoint>& mounts);

    /// The drives that are mounted, by letter.
    [[nodiscard]] const std::vector<Drive>& drives() const { return drives_; }
    /// Nothing for a letter that is not given or whose disk is not mounted. Case does not count.
    [[nodiscard]] std::optional<std::string> mountPointOf(char letter) const;
    /// The drive with the deepest mount point that holds the absolute machine path.
    [[nodiscard]] const Drive& driveOf(std::string_view machinePath) const;

  private:
    [[nodiscard]] std::optional<char> letterFor(const std::string& mountPoint);

    SettingsStore& store_;
    std::vector<Drive> drives_;
};

} // namespace sonarith
