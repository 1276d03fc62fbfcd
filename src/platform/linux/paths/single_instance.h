// SPDX-License-Identifier: GPL-3.0-or-later
// Tells whether this user already runs the program. It keeps a second one from nothing by itself,
// and brings no window to the front.
#pragma once

#include <string>
#include <vector>

namespace sonarith {

/// Where to seek the lock, best first. `storeFolder` is the settings store's, and is made: the lock
/// lies beside what it guards, where all sessions of a user look, whatever their environment. Next
/// $XDG_RUNTIME_DIR, if it is what it should be (absolute, this user's, writable by nobody else).
[[nodiscard]] std::vector<std::string> instanceFolders(const std::string& storeFolder);

/// Holds a lock on a file for as long as it lives, in the first of the folders that has locks: one
/// may be read-only, or on a network without them. The kernel releases it at the end of the
/// process, however that comes.
class SingleInstance {
  public:
    explicit SingleInstance(const std::vector<std::string>& folders);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// False only if another one is known to hold the lock: where no lock can be had at all, the
    /// program starts rather than never.
    [[nodiscard]] bool isFirst() const { return first_; }

  private:
    [[nodiscard]] bool lockIn(const std::string& folder);

    int descriptor_ = -1;
    bool first_ = true;
};

} // namespace sonarith
