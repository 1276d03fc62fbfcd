// SPDX-License-Identifier: GPL-3.0-or-later
// Reads and writes a regular file of the machine in place. It uses machine paths only; path_map.h
// translates the logic's paths.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include <sys/stat.h>

#include "platform/binary_file.h"
#include "platform/file_system.h"
#include "platform/linux/files/file_descriptor.h"

namespace sonarith {

/// The errno value with which opening is refused: 0 for a regular file (not refused); EISDIR for a
/// folder; EACCES for a pipe, socket or device, because opening or reading it could block forever
/// or have side effects.
[[nodiscard]] int refusalOf(const struct stat& status);

/// The modification time. FileTime extends from September 1677 to April 2262; other times, which
/// occur only on damaged or hostile file systems, are clamped.
[[nodiscard]] FileTime fileTimeOf(const timespec& changed);

class LinuxBinaryFile final : public BinaryFile {
  public:
    /// Opens a file like FileSystem::openBinary(), but the error for a missing folder is
    /// fileNotFound, as for a missing file.
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
