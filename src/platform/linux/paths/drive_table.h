// SPDX-License-Identifier: GPL-3.0-or-later
// Maps drive letters to parts of the machine's file tree. C: is the root file system, H: is the
// user's home folder. Mounted file systems get the other letters from D: to Z: in the order in
// which they are first seen. The settings store keeps these letters, so that a stored path always
// leads to the same mount point. The table translates no paths and accesses no disk.
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

/// The home folder has its own letter so that its path is not part of the logic's paths: it may
/// contain a dot (/home/jane.doe), and the logic takes the extension of a file from the first dot
/// of the whole path.
inline constexpr char homeLetter = 'H';

struct Drive {
    char letter;            ///< upper case
    std::string mountPoint; ///< for H: the home folder

    bool operator==(const Drive&) const = default;
};

class DriveTable {
  public:
    /// `home` is a machine path; the home folder has its letter even if the folder does not exist.
    /// If `home` is "/" or empty, there is no H:. Before the first update() only C: and H: exist.
    /// The store must outlive this object.
    explicit DriveTable(SettingsStore& store, std::string_view home = {});

    /// Updates the drives to the current mounts. A mount point seen for the first time is assigned
    /// a letter, which is stored. No mount is assigned H:, whatever the store contains. A mount on
    /// the home folder is reached as H: without an assignment. If the store already contains a
    /// letter for that mount, the mount also keeps that letter, since stored paths may use it. When
    /// all letters are assigned, a further mount belongs to the drive that contains its mount
    /// point.
    void update(const std::vector<MountPoint>& mounts);

    /// The drives that currently exist, in the order of their letters.
    [[nodiscard]] const std::vector<Drive>& drives() const { return drives_; }
    /// The mount point of a letter (upper or lower case); empty if the letter is not assigned or
    /// its disk is not mounted.
    [[nodiscard]] std::optional<std::string> mountPointOf(char letter) const;
    /// The drive with the deepest mount point that contains the absolute machine path. If H: and
    /// another drive both have this mount point, H: is returned.
    [[nodiscard]] const Drive& driveOf(std::string_view machinePath) const;

  private:
    void clear();

    SettingsStore& store_;
    std::string home_; ///< empty if there is no H:
    std::vector<Drive> drives_;
};

/// Searches the letters from D: to Z:, but not H:. Returns the first letter whose stored mount
/// point is `mountPoint`; empty if there is none. An empty `mountPoint` finds the first free
/// letter.
[[nodiscard]] std::optional<char> storedLetterOf(const SettingsStore& store,
                                                 const std::string& mountPoint);
/// Like storedLetterOf(), but if the store has no letter, a free letter is stored and returned;
/// empty if none is free.
[[nodiscard]] std::optional<char> assignLetter(SettingsStore& store, const std::string& mountPoint);
/// The mount point that the store has for a letter; empty if there is none.
[[nodiscard]] std::string storedMountPoint(const SettingsStore& store, char letter);

} // namespace sonarith
