// SPDX-License-Identifier: GPL-3.0-or-later
// Opens and reads a regular file. Everything else is refused, because reading a device or a pipe
// could block forever.
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
    /// Fails if the file is missing, may not be read by this user or is not a regular file. The
    /// error's message states the cause.
    [[nodiscard]] static Result<FileHandle> open(const std::filesystem::path& path);

    [[nodiscard]] int descriptor() const { return descriptor_.get(); }
    /// Length in bytes when the file was opened.
    [[nodiscard]] std::int64_t bytes() const { return bytes_; }
    /// Whether the path still refers to this file.
    [[nodiscard]] bool stillThere() const;
    /// Whether the path still refers to this file, and the file has not been written to since it
    /// was opened.
    [[nodiscard]] bool unchanged() const;
    /// Reads from byte `offset` on; returns the number of bytes read, which is smaller than the
    /// size of `out` at the end of the file or after a device error.
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
