// SPDX-License-Identifier: GPL-3.0-or-later
// Hidden names for files that are incomplete or not yet in their final place, and the deletion of
// such files left by a killed process. It does not depend on the contents of the files.
#pragma once

#include <string>
#include <string_view>

#include "platform/linux/files/file_descriptor.h"

namespace sonarith::files {

/// ".sonarith-", eight digits that identify this machine, "-", sixteen random ones; all
/// hexadecimal.
[[nodiscard]] std::string newHiddenName();

/// The name of a file in a folder. The destructor deletes the file unless it has been renamed.
class HiddenName {
  public:
    /// `folder` need not stay open.
    HiddenName(const FileDescriptor& folder, std::string name);
    ~HiddenName();
    HiddenName(const HiddenName&) = delete;
    HiddenName& operator=(const HiddenName&) = delete;

    /// Renames it to `name` in `folder` in one step, replacing an existing file. Returns an errno
    /// value; 0 is success.
    [[nodiscard]] int renameTo(const FileDescriptor& folder, const std::string& name);

  private:
    FileDescriptor folder_;
    std::string name_; ///< empty after a rename
};

/// Marks `file` as owned by a live process, for as long as it or a duplicate is open, or until
/// `unclaim`. False only if another process has claimed it because it takes the owner for a process
/// that has ended. Without file locks in the file system no claim can be seen, and no file is ever
/// deleted.
[[nodiscard]] bool claim(const FileDescriptor& file);
void unclaim(const FileDescriptor& file);

/// Deletes the unclaimed hidden files of `folder`: regular files of this user with names that
/// `newHiddenName` creates on this machine. Failures are ignored.
void removeLeftovers(const FileDescriptor& folder);

} // namespace sonarith::files
