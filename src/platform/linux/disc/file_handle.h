// SPDX-License-Identifier: GPL-3.0-or-later
// An ordinary file opened for reading. Devices, pipes and folders are
// refused: a read of them could wait for ever.
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
    /// Errors, as causes in words: not there, not allowed, no ordinary file.
    [[nodiscard]] static Result<FileHandle> open(const std::filesystem::path& path);

    [[nodiscard]] int descriptor() const { return descriptor_.get(); }
    /// Length in bytes when it was opened.
    [[nodiscard]] std::int64_t bytes() const { return bytes_; }
    /// Whether its path still leads to this very file.
    [[nodiscard]] bool stillThere() const;
    /// Whether its path still leads to this very file, and nobody has written to it.
    [[nodiscard]] bool unchanged() const;
    /// Reads from byte `offset` on; returns how many bytes were there, fewer at the end or after an
    /// error of the device.
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
