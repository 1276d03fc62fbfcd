// SPDX-License-Identifier: GPL-3.0-or-later
// The mounted file systems of the machine, as the kernel lists them. It gives no letters; that is
// drive_table.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sonarith {

struct MountPoint {
    std::string path; ///< absolute, without a trailing slash but for "/"
    std::string fileSystemType;
    /// Shows a part of its file system only; it may then be a single file.
    bool partial = false;
    std::string device = {}; ///< of the file system, "8:1"; "0:42" for one without a block device
    std::string source = {}; ///< "/dev/sda1", "server:/music" or whatever its kind has

    bool operator==(const MountPoint&) const = default;
};

/// Reads the text of /proc/self/mountinfo (format: proc(5)). Lines that do not have that form are
/// left out; of several mounts on one point the last one is what is seen there.
[[nodiscard]] std::vector<MountPoint> parseMountInfo(std::string_view text);

/// Whether a person keeps files there, so that it deserves a letter.
[[nodiscard]] bool holdsUserFiles(const MountPoint& mount);

/// The kernel's list, and whether it has changed.
class MountInfo {
  public:
    explicit MountInfo(const std::string& path = "/proc/self/mountinfo");
    ~MountInfo();
    MountInfo(const MountInfo&) = delete;
    MountInfo& operator=(const MountInfo&) = delete;

    /// The mounts that hold user files, at the first call and after each change; nothing if the
    /// list is as it was. Costs one system call then.
    [[nodiscard]] std::optional<std::vector<MountPoint>> changed();
    /// The same with all mounts, none of which is looked at. One object serves one of the two.
    [[nodiscard]] std::optional<std::vector<MountPoint>> allChanged();

  private:
    int descriptor_;
    bool readBefore_ = false;
};

} // namespace sonarith
