// SPDX-License-Identifier: GPL-3.0-or-later
// An ordinary file of the machine, opened in place. It knows machine paths alone; which path a name
// of the logic means is path_map.h's business.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include <sys/stat.h>

#include "platform/binary_file.h"
#include "platform/file_system.h"
#include "platform/linux/files/file_descriptor.h"

namespace sonarith {

/// Whether this is an ordinary file, as an errno value: 0, EISDIR for a folder, EACCES for a pipe,
/// socket or device, whose opening or reading could wait for ever or start something.
[[nodiscard]] int refusalOf(const struct stat& status);

/// The time of last change as FileTime can hold it: of years beyond 2262 or before 1677, which only
/// damaged or hostile file systems have, the nearest.
[[nodiscard]] FileTime fileTimeOf(const timespec& changed);

class LinuxBinaryFile final : public BinaryFile {
  public:
    /// Opens as FileSystem::openBinary() does. A missing folder is fileNotFound here, as a missing
    /// file is.
    [[nodiscard]] static Result<std::unique_ptr<BinaryFile>> open(const std::string& machinePath,
                                                                  FileAccess access);

    [[nodiscard]] Result<std::int64_t> length() const override;
    [[nodiscard]] Result<std::size_t> read(std::int64_t offset, std::span<std::byte> into) override;
    Status write(std::int64_t offset, std::span<const std::byte> bytes) override;

  private:
    LinuxBinaryFile(files::FileDescriptor opened, FileAccess access)
        : opened_(std::move(opened)), access_(access) {}

    files::FileDescriptor opened_;
    FileAccess access_;
};

} // namespace sonarith
