// SPDX-License-Identifier: GPL-3.0-or-later
// A regular file opened for reading. Devices, pipes and folders are refused: reading them could
// block forever.
#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <span>

#include <sys/types.h>

#include "platform/linux/files/file_descriptor.h"
#include "platform/result.h"

namespace sonarith::disc {

class FileHandle {
  public:
    /// Errors, with the cause as a message: missing, no permission, not a regular file.
    [[nodiscard]] static Result<FileHandle> open(const std::filesystem::path& path);

    [[nodiscard]] int descriptor() const { return descriptor_.get(); }
    /// Length in bytes when the file was opened.
    [[nodiscard]] std::int64_t bytes() const { return bytes_; }
    /// Whether its path still refers to this file.
    [[nodiscard]] bool stillThere() const;
    /// Whether its path still refers to this file, and the file has not been written to.
    [[nodiscard]] bool unchanged() const;
    /// Reads from byte `offset` on; returns the number of bytes read, which is smaller at the end
    /// or after a device error.
    [[nodiscard]] std::size_t readAt(std::int64_t offset, std::span<std::byte> out) const;

  private:
    FileHandle() = default;

    std::filesystem::path path_;
    files::FileDescriptor descriptor_;
    std::int64_t bytes_ = 0;
    ::dev_t device_ = 0;
    ::ino_t inode_ = 0;
    std::timespec modified_ = {};
};

} // namespace sonarith::disc
