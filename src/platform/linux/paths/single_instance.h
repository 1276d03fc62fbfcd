// SPDX-License-Identifier: GPL-3.0-or-later
// Detects whether this user already runs the program. It does not itself stop a second instance or
// bring a window to the front.
#pragma once

#include <string>
#include <vector>

namespace sonarith {

/// The folders for the lock, the best one first. The first is `storeFolder`, the folder of the
/// settings store: there the lock is beside the data that it protects, and all sessions of a user
/// find it, whatever their environment. This function creates that folder. The second is
/// $XDG_RUNTIME_DIR, if it is valid (absolute, owned by this user, writable by no other user).
[[nodiscard]] std::vector<std::string> instanceFolders(const std::string& storeFolder);

/// Tries to lock a file, and holds the lock until the SingleInstance is destroyed. The file is in
/// the first of the folders that supports locks: a folder may be read-only, or on a network without
/// locks. The kernel releases the lock when the process ends, even after a kill.
class SingleInstance {
  public:
    explicit SingleInstance(const std::vector<std::string>& folders);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// False only if another instance is known to hold the lock. True if no folder supports locks,
    /// so that the program starts in this case, too.
    [[nodiscard]] bool isFirst() const { return first_; }

  private:
    [[nodiscard]] bool lockIn(const std::string& folder);

    int descriptor_ = -1;
    bool first_ = true;
};

} // namespace sonarith
