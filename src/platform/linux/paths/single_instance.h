// SPDX-License-Identifier: GPL-3.0-or-later
// Tells whether this user already runs the program. It keeps a second one from nothing by itself,
// and brings no window to the front.
#pragma once

#include <string>

namespace sonarith {

/// $XDG_RUNTIME_DIR if it is what it should be (absolute, this user's, writable by nobody else),
/// else "sonarith" below the user's data folder, which is made. Never a folder that others can
/// write.
[[nodiscard]] std::string instanceFolder();

/// Holds a lock on a file in `folder` for as long as it lives. The kernel releases it at the end of
/// the process, however that comes.
class SingleInstance {
  public:
    explicit SingleInstance(const std::string& folder);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// False only if another one is known to hold the lock: where no lock can be had at all, the
    /// program starts rather than never.
    [[nodiscard]] bool isFirst() const { return first_; }

  private:
    int descriptor_;
    bool first_ = true;
};

} // namespace sonarith
