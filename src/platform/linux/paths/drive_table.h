// SPDX-License-Identifier: GPL-3.0-or-later
// Maps drive letters to parts of the machine's file tree. C: is the root file system, H: the user's
// home; mounted file systems get the other letters from D: to Z: in the order in which they are
// first seen, and keep them in the settings store, so that a stored path always names the same
// disk. It translates no paths and accesses no disk.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/paths/mount_info.h"
#include "platform/settings_store.h"

namespace sonarith {

/// The store's section with one key for each assigned letter; the value is the mount point.
inline constexpr const char* drivesSection = "Drives";

/// The home has its own letter so that its path, which may contain a dot (/home/jane.doe), is not
/// part of the logic's paths: a file's extension is taken from the first dot of a whole path.
inline constexpr char homeLetter = 'H';

struct Drive {
    char letter;            ///< upper case
    std::string mountPoint; ///< or the home folder

    bool operator==(const Drive&) const = default;
};

class DriveTable {
  public:
    /// `home` is a machine path; the home has its letter even if it does not exist. If `home` is
    /// "/" or empty, there is no home. Only C: and H: exist before the first update(). The store
    /// must outlive this.
    explicit DriveTable(SettingsStore& store, std::string_view home = {});

    /// Updates the drives to the current mounts. A mount point seen for the first time is assigned
    /// a letter, which is stored. H: is never assigned to a mount, whatever the store contains. A
    /// mount on the home itself is H:. If the store already has another letter for that mount, it
    /// keeps this as a second letter, since stored paths may use it. When all letters are assigned,
    /// a further mount belongs to the drive that contains its mount point.
    void update(const std::vector<MountPoint>& mounts);

    /// The drives that are mounted, by letter.
    [[nodiscard]] const std::vector<Drive>& drives() const { return drives_; }
    /// Empty for a letter that is not assigned or whose disk is not mounted. Case-insensitive.
    [[nodiscard]] std::optional<std::string> mountPointOf(char letter) const;
    /// The drive with the deepest mount point that contains the absolute machine path; H: if two
    /// drives have the same mount point.
    [[nodiscard]] const Drive& driveOf(std::string_view machinePath) const;

  private:
    void clear();

    SettingsStore& store_;
    std::string home_; ///< empty: none
    std::vector<Drive> drives_;
};

/// The letter that the store has for a mount point; empty if there is none.
[[nodiscard]] std::optional<char> storedLetterOf(const SettingsStore& store,
                                                 const std::string& mountPoint);
/// As storedLetterOf(), or else a free letter, which is stored; empty if none is free.
[[nodiscard]] std::optional<char> assignLetter(SettingsStore& store, const std::string& mountPoint);
/// The mount point that the store has for a letter; empty if there is none.
[[nodiscard]] std::string storedMountPoint(const SettingsStore& store, char letter);

} // namespace sonarith
