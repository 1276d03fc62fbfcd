// SPDX-License-Identifier: GPL-3.0-or-later
// Hidden names, under which a file stands in somebody's folder while it is not whole or not yet
// where it belongs, and the removal of those files that a program left when it was killed. Nothing
// is known here of what the files hold.
#pragma once

#include <string>
#include <string_view>

#include "platform/linux/files/file_descriptor.h"

namespace sonarith::files {

/// ".sonarith-", eight digits that stand for this machine, "-", sixteen random ones; hexadecimal.
[[nodiscard]] std::string newHiddenName();

/// The name that a file bears in a folder; taken away with this object, unless it was changed.
class HiddenName {
  public:
    /// `folder` need not stay open.
    HiddenName(const FileDescriptor& folder, std::string name);
    ~HiddenName();
    HiddenName(const HiddenName&) = delete;
    HiddenName& operator=(const HiddenName&) = delete;

    /// Makes it `name` in `folder` instead, in place of what stands there, in one step. Answers an
    /// errno value; 0 is success.
    [[nodiscard]] int renameTo(const FileDescriptor& folder, const std::string& name);

  private:
    FileDescriptor folder_;
    std::string name_; ///< empty once it was changed
};

/// Says that the owner of `file` lives, for as long as it or a duplicate is open, or until
/// `unclaim`. False only where somebody else has it, who takes it for a dead program's. Where the
/// file system has no locks nothing can be said, and nothing is ever removed.
[[nodiscard]] bool claim(const FileDescriptor& file);
void unclaim(const FileDescriptor& file);

/// Removes the hidden files of `folder` that nobody claims: plain files of this user under names
/// that `newHiddenName` gives on this machine. What fails is passed over.
void removeLeftovers(const FileDescriptor& folder);

} // namespace sonarith::files
