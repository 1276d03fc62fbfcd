// SPDX-License-Identifier: GPL-3.0-or-later
// One open file as bytes at offsets: what headers and tags are read from and written to. It knows
// no records and no text, and does not open itself; file_system.h does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/result.h"

namespace sonarith {

/// What an opened file may be used for. The other use fails with badFileMode.
enum class FileAccess { read, write, readWrite };

/// One open file. Reads and writes at byte offsets from 0. Closed by its destructor. Used by the
/// thread that opened it.
class BinaryFile {
  public:
    virtual ~BinaryFile() = default;

    /// The present length in bytes.
    [[nodiscard]] virtual Result<std::int64_t> length() const = 0;
    /// Fills the head of `into` with the bytes from `offset` on; how many there were (fewer at the
    /// end of the file, 0 behind it). Errors: badRecordNumber (63) for a negative offset,
    /// badFileMode (54) without read access, deviceInputOutput...
    [[nodiscard]] virtual Result<std::size_t> read(std::int64_t offset,
                                                   std::span<std::byte> into) = 0;
    /// Writes all bytes at `offset` in one call to the system, growing the file if needed. No bytes
    /// change nothing. Errors: badRecordNumber, badFileMode without write access, diskFull...
    virtual Status write(std::int64_t offset, std::span<const std::byte> bytes) = 0;
};

} // namespace sonarith
