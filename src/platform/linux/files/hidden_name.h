// SPDX-License-Identifier: GPL-3.0-or-later
// Creates hidden names for files that are incomplete or not yet in their final place, and deletes
// such files left by a killed process. Nothing here depends on the contents of the files.
#pragma once

#include <string>
#include <string_view>

#include "platform/linux/files/file_descriptor.h"

namespace sonarith::files {

/// Returns ".sonarith-", eight hexadecimal digits that identify this machine, "-", and sixteen
/// random hexadecimal digits.
[[nodiscard]] std::string newHiddenName();

/// The name of a file in a folder. The destructor deletes the file unless it has been renamed.
class HiddenName {
  public:
    /// `folder` need not stay open.
    HiddenName(const FileDescriptor& folder, std::string name);
    ~HiddenName();
    HiddenName(const HiddenName&) = delete;
    HiddenName& operator=(const HiddenName&) = delete;

    /// Renames the file to `name` in `folder` in one step, replacing an existing file. Returns an
    /// errno value; 0 is success.
    [[nodiscard]] int renameTo(const FileDescriptor& folder, const std::string& name);

  private:
    FileDescriptor folder_;
    std::string name_; ///< empty after a rename
};

/// Marks `file` as owned by a live process until `unclaim` is called, or until `file` and its
/// duplicates are closed. Returns false if the file is claimed through a separately opened
/// descriptor, or if another process is deleting the file as a leftover. On a file system without
/// file locks, claim() returns true. There removeLeftovers() deletes nothing, because it cannot
/// detect claims.
[[nodiscard]] bool claim(const FileDescriptor& file);
void unclaim(const FileDescriptor& file);

/// Deletes the unclaimed hidden files of `folder`: regular files of this user with names that
/// `newHiddenName` creates on this machine. Failures are ignored.
void removeLeftovers(const FileDescriptor& folder);

} // namespace sonarith::files
