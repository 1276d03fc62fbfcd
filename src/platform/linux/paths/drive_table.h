// SPDX-License-Identifier: GPL-3.0-or-later
// Which drive letter stands for which part of the machine's files. C: is the root file system, H:
// the user's home; mounted file systems get the other letters from D: to Z: in the order in which
// they are first seen, and keep them in the settings store, so that a stored path means the same
// disk tomorrow. It translates no paths and looks at no disk.
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

/// The home has a letter so that its own path, which may hold a dot (/home/jane.doe), is no part of
/// the logic's: a file's extension is taken from the first dot of a whole path.
inline constexpr char homeLetter = 'H';

struct Drive {
    char letter;            ///< upper case
    std::string mountPoint; ///< or the home

    bool operator==(const Drive&) const = default;
};

class DriveTable {
  public:
    /// `home` is a machine path; it has its letter whether it exists or not. None: "/" or empty.
    /// Knows C: and H: alone until update(). The store must outlive this.
    explicit DriveTable(SettingsStore& store, std::string_view home = {});

    /// What is mounted now. A mount point seen for the first time gets a letter, which is stored.
    /// H: is never given to one, whatever the store says. A mount on the home itself is H:; it has
    /// a second letter only if the store gave it one before, for the paths that name it.
    /// With all letters given, a further mount belongs to the drive that it is mounted in.
    void update(const std::vector<MountPoint>& mounts);

    /// The drives that are mounted, by letter.
    [[nodiscard]] const std::vector<Drive>& drives() const { return drives_; }
    /// Nothing for a letter that is not given or whose disk is not mounted. Case does not count.
    [[nodiscard]] std::optional<std::string> mountPointOf(char letter) const;
    /// The drive with the deepest mount point that holds the absolute machine path; H: of two.
    [[nodiscard]] const Drive& driveOf(std::string_view machinePath) const;

  private:
    void clear();

    SettingsStore& store_;
    std::string home_; ///< empty: none
    std::vector<Drive> drives_;
};

/// The letter that the store holds for a mount point; nothing if there is none.
[[nodiscard]] std::optional<char> storedLetterOf(const SettingsStore& store,
                                                 const std::string& mountPoint);
/// The same, or else a free one, which is stored; nothing if none is free.
[[nodiscard]] std::optional<char> giveLetter(SettingsStore& store, const std::string& mountPoint);
/// The mount point that the store holds for a letter; empty if there is none.
[[nodiscard]] std::string storedMountPoint(const SettingsStore& store, char letter);

} // namespace sonarith
