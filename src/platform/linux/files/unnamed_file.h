// SPDX-License-Identifier: GPL-3.0-or-later
// A file that stays invisible until it is complete: it is created in a folder, written, and then
// given its name in one step. So the name always refers to either the complete old file or the
// complete new one. Nothing here depends on the contents of the file.
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
    noName,    ///< the file has no name, or a hidden name if the file system requires a name
    hiddenName ///< the file has a hidden name in its folder
};

class UnnamedFile {
  public:
    /// Creates an empty file in `folder`, open for reading and writing. Unless it is published, the
    /// file is deleted with this object. If the process is killed, a file without a name is
    /// deleted, too, but a file with a hidden name remains until the next create() in that folder.
    [[nodiscard]] static Result<UnnamedFile> create(const std::filesystem::path& folder,
                                                    Concealment concealment = Concealment::noName);

    [[nodiscard]] const FileDescriptor& descriptor() const { return file_; }

    /// Gives the file the name `target` and flushes the file to the disk before returning. An
    /// existing file of that name is replaced in one step, and its mode is kept; a symbolic link is
    /// followed. The contents are copied if this file was published before. They are also copied if
    /// the system cannot link or move this file to `target`, for example to another file system.
    /// After a failure this file can still be published, and `target` is unchanged. Exception:
    /// after a failed flush of the folder, the last step, `target` already names the new file.
    /// Fails if `target` is a folder, another non-regular file or a file without write permission.
    [[nodiscard]] Status publish(const std::filesystem::path& target);

  private:
    UnnamedFile() = default;
    // Each of these five functions returns an errno value; 0 is success.
    [[nodiscard]] int openIn(const FileDescriptor& folder, Concealment concealment);
    [[nodiscard]] int openUnderHiddenName(const FileDescriptor& folder);
    [[nodiscard]] int linkUnderHiddenName(const FileDescriptor& folder);
    [[nodiscard]] int moveTo(const SavePlace& place);
    [[nodiscard]] int copyTo(const SavePlace& place, Concealment concealment) const;

    FileDescriptor file_;
    std::unique_ptr<HiddenName> hiddenName_; ///< null if the file has no hidden name
    Concealment concealment_ = Concealment::noName;
    bool published_ = false;
};

} // namespace sonarith::files
