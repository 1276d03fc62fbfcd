// SPDX-License-Identifier: GPL-3.0-or-later
// The interface of an open file whose bytes are read and written at given offsets. The logic uses
// it for headers and tags of sound files. It supports neither records nor text. FileSystem
// (file_system.h) opens the files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/result.h"

namespace sonarith {

/// Which operations an open file allows. An operation that is not allowed fails with badFileMode.
enum class FileAccess { read, write, readWrite };

/// One open file. Byte offsets start at 0. The destructor closes the file. No two threads may use
/// the file at the same time.
class BinaryFile {
  public:
    virtual ~BinaryFile() = default;

    /// The current length in bytes.
    [[nodiscard]] virtual Result<std::int64_t> length() const = 0;
    /// Reads bytes from `offset` on into the start of `into`. Returns the number of bytes read:
    /// fewer than requested at the end of the file, 0 beyond it. Errors: badRecordNumber (63) for a
    /// negative offset, badFileMode (54) without read access, deviceInputOutput and others.
    [[nodiscard]] virtual Result<std::size_t> read(std::int64_t offset,
                                                   std::span<std::byte> into) = 0;
    /// Writes all bytes at `offset` and grows the file if needed. Uses one system call if possible,
    /// so that no other process reads half of a tag. An empty span changes nothing. Errors:
    /// badRecordNumber, badFileMode without write access, diskFull and others.
    virtual Status write(std::int64_t offset, std::span<const std::byte> bytes) = 0;
};

} // namespace sonarith
