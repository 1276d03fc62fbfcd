// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the kernel's list of mounted file systems. Drive letters are assigned in drive_table.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sonarith {

struct MountPoint {
    std::string path; ///< absolute, without a trailing slash except for "/"
    std::string fileSystemType;
    /// Whether only a part of the file system is mounted: a folder, or a single file.
    bool partial = false;
    std::string device = {}; ///< "8:1"; "0:42" for a file system without a block device
    std::string source = {}; ///< "/dev/sda1" or "server:/music"; the format depends on the type

    bool operator==(const MountPoint&) const = default;
};

/// Parses the text of /proc/self/mountinfo (format: proc(5)). Lines in another format are skipped;
/// if several mounts have the same mount point, only the last one is visible and returned.
[[nodiscard]] std::vector<MountPoint> parseMountInfo(std::string_view text);

/// Whether the mount may contain the user's files and therefore gets a drive letter.
[[nodiscard]] bool holdsUserFiles(const MountPoint& mount);

/// Reads the kernel's list of mounts, and detects changes of the list.
class MountInfo {
  public:
    explicit MountInfo(const std::string& path = "/proc/self/mountinfo");
    ~MountInfo();
    MountInfo(const MountInfo&) = delete;
    MountInfo& operator=(const MountInfo&) = delete;

    /// The first call, and the first call after each change of the list, return the mounts for
    /// which holdsUserFiles() is true, without mounts of a single file on a local disk. All other
    /// calls return nullopt and cost one system call.
    [[nodiscard]] std::optional<std::vector<MountPoint>> changed();
    /// Like changed(), but returns all mounts. Reads only the kernel's list; changed() also
    /// accesses mount points, to detect mounts of a single file. On each MountInfo object, only one
    /// of the two functions may be used.
    [[nodiscard]] std::optional<std::vector<MountPoint>> allChanged();

  private:
    int descriptor_;
    bool readBefore_ = false;
};

} // namespace sonarith
