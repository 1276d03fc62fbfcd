// SPDX-License-Identifier: GPL-3.0-or-later
// The mounted file systems of the machine, as the kernel lists them. It assigns no letters;
// drive_table.h does.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sonarith {

struct MountPoint {
    std::string path; ///< absolute, without a trailing slash except for "/"
    std::string fileSystemType;
    /// Shows only a part of its file system, which may be a single file.
    bool partial = false;
    std::string device = {}; ///< of the file system, "8:1"; "0:42" for one without a block device
    std::string source = {}; ///< "/dev/sda1", "server:/music" or the form of its type

    bool operator==(const MountPoint&) const = default;
};

/// Parses the text of /proc/self/mountinfo (format: proc(5)). Lines in another format are skipped;
/// of several mounts on one mount point only the last, visible one is returned.
[[nodiscard]] std::vector<MountPoint> parseMountInfo(std::string_view text);

/// Whether the user keeps files on it, so that it gets a drive letter.
[[nodiscard]] bool holdsUserFiles(const MountPoint& mount);

/// The kernel's list, with change detection.
class MountInfo {
  public:
    explicit MountInfo(const std::string& path = "/proc/self/mountinfo");
    ~MountInfo();
    MountInfo(const MountInfo&) = delete;
    MountInfo& operator=(const MountInfo&) = delete;

    /// The mounts that hold user files, at the first call and after each change; empty if the list
    /// has not changed, which costs one system call.
    [[nodiscard]] std::optional<std::vector<MountPoint>> changed();
    /// The same with all mounts, without accessing any of them. One object must be used for only
    /// one of the two functions.
    [[nodiscard]] std::optional<std::vector<MountPoint>> allChanged();

  private:
    int descriptor_;
    bool readBefore_ = false;
};

} // namespace sonarith
