// SPDX-License-Identifier: GPL-3.0-or-later
// Files that nobody sees until they are whole: made in a folder, written, and put under their name
// in one step, so that whatever happens the name holds the old file or the new one. Nothing is
// known here of what the files hold.
#pragma once

#include <filesystem>
#include <memory>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/hidden_name.h"
#include "platform/result.h"

namespace sonarith::files {

struct SavePlace;

/// How a file is kept out of sight.
enum class Concealment {
    noName,    ///< it has no name; on a file system that has no such files, as below
    hiddenName ///< it has a hidden name in its folder
};

class UnnamedFile {
  public:
    /// An empty file in `folder`, open for reading and writing. It is gone when this object is, or
    /// when the process ends, unless it was published; but a killed program leaves a hidden name,
    /// which the next file made in that folder removes.
    [[nodiscard]] static Result<UnnamedFile> create(const std::filesystem::path& folder,
                                                    Concealment concealment = Concealment::noName);

    [[nodiscard]] const FileDescriptor& descriptor() const { return file_; }

    /// Puts what the file holds under the name `target`, and on the disk, before it returns. A file
    /// of that name is replaced in one step and passes on its mode; a symbolic link is followed.
    /// Only for another file system, and for a second name, it is copied. After a failure `target`
    /// is what it was, and this file can still be published. Fails for folders and for anything
    /// else that is no plain file, and for files that may not be written to.
    [[nodiscard]] Status publish(const std::filesystem::path& target);

  private:
    UnnamedFile() = default;
    // These answer an errno value; 0 is success.
    [[nodiscard]] int openIn(const FileDescriptor& folder, Concealment concealment);
    [[nodiscard]] int openUnderHiddenName(const FileDescriptor& folder);
    [[nodiscard]] int linkUnderHiddenName(const FileDescriptor& folder);
    [[nodiscard]] int moveTo(const SavePlace& place);
    [[nodiscard]] int copyTo(const SavePlace& place, Concealment concealment) const;

    FileDescriptor file_;
    std::unique_ptr<HiddenName> hiddenName_; ///< while it has one
    Concealment concealment_ = Concealment::noName;
    bool published_ = false;
};

} // namespace sonarith::files
