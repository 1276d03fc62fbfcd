// SPDX-License-Identifier: GPL-3.0-or-later
// Files that stay invisible until they are complete: created in a folder, written, and given their
// name in one step, so that the name always refers to either the complete old file or the complete
// new one. It does not depend on the contents of the files.
#pragma once

#include <filesystem>
#include <memory>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/hidden_name.h"
#include "platform/result.h"

namespace sonarith::files {

struct SavePlace;

/// How a file is hidden.
enum class Concealment {
    noName,    ///< it has no name; a hidden name if the file system does not support that
    hiddenName ///< it has a hidden name in its folder
};

class UnnamedFile {
  public:
    /// Creates an empty file in `folder`, open for reading and writing. Unless it is published, the
    /// file is deleted with this object or when the process ends. A killed process leaves a file
    /// that has a hidden name; it is deleted when the next file is created in that folder.
    [[nodiscard]] static Result<UnnamedFile> create(const std::filesystem::path& folder,
                                                    Concealment concealment = Concealment::noName);

    [[nodiscard]] const FileDescriptor& descriptor() const { return file_; }

    /// Gives the file the name `target` and flushes it to the disk before it returns. An existing
    /// file of that name is replaced in one step, and its mode is kept; a symbolic link is
    /// followed. The contents are copied only if this file was published before, or if it cannot
    /// be linked at the target, for example on another file system. After a failure `target` is
    /// unchanged, and this file can still be published. Fails if `target` is a folder, another
    /// non-regular file or a file without write permission.
    [[nodiscard]] Status publish(const std::filesystem::path& target);

  private:
    UnnamedFile() = default;
    // These return an errno value; 0 is success.
    [[nodiscard]] int openIn(const FileDescriptor& folder, Concealment concealment);
    [[nodiscard]] int openUnderHiddenName(const FileDescriptor& folder);
    [[nodiscard]] int linkUnderHiddenName(const FileDescriptor& folder);
    [[nodiscard]] int moveTo(const SavePlace& place);
    [[nodiscard]] int copyTo(const SavePlace& place, Concealment concealment) const;

    FileDescriptor file_;
    std::unique_ptr<HiddenName> hiddenName_; ///< null if the file has none
    Concealment concealment_ = Concealment::noName;
    bool published_ = false;
};

} // namespace sonarith::files
