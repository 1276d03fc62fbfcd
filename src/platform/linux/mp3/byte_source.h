// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the bytes of MP3 streams from a file or from memory. Several threads can read a ByteSource
// at once, at any offset. A SourceWindow buffers the bytes for one thread that reads mostly
// sequentially. Nothing here parses the bytes.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/mp3/mp3_header.h"
#include "platform/result.h"

namespace sonarith::mp3 {

/// The number of bytes that a read returned, and the failure if the read was short.
struct Reading {
    /// The number of bytes that were read into the beginning of the buffer. Smaller than requested
    /// only after a failure.
    std::size_t bytes = 0;
    std::optional<Error> failure;
};

class ByteSource {
  public:
    virtual ~ByteSource() = default;
    /// Constant during the lifetime of the source.
    [[nodiscard]] virtual std::int64_t size() const = 0;
    /// Reads the bytes from `offset` on into `out`, up to the first byte that cannot be read.
    /// Precondition: the range is within size().
    [[nodiscard]] virtual Reading readAt(std::int64_t offset,
                                         std::span<std::uint8_t> out) const = 0;
};

/// Bytes in memory. They must outlive the source.
class MemorySource : public ByteSource {
  public:
    explicit MemorySource(Bytes bytes) : bytes_(bytes) {}
    [[nodiscard]] std::int64_t size() const override {
        return static_cast<std::int64_t>(bytes_.size());
    }
    [[nodiscard]] Reading readAt(std::int64_t offset, std::span<std::uint8_t> out) const override;

  private:
    Bytes bytes_;
};

/// Identifies a file and its state: if the identities at two times are equal, the file counts as
/// unchanged between these times. A change that keeps the length and the time of modification is
/// not noticed.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t bytes = 0;
    std::int64_t modifiedSeconds = 0;
    std::int64_t modifiedNanoseconds = 0;
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;

    /// Empty if the file cannot be queried, for example because it does not exist.
    [[nodiscard]] static std::optional<FileIdentity> of(const std::filesystem::path& path);
    [[nodiscard]] static std::optional<FileIdentity> of(const files::FileDescriptor& file);
};

class FileSource : public ByteSource {
  public:
    /// Opens regular files only: a pipe could block the caller forever. Once `stop` is true every
    /// read fails, so that a scan of the file ends; `stop` must outlive the source. Error messages
    /// do not contain the path.
    [[nodiscard]] static Result<std::unique_ptr<FileSource>> open(const std::filesystem::path& path,
                                                                  const std::atomic<bool>& stop);

    [[nodiscard]] std::int64_t size() const override { return identity_.bytes; }
    /// Also fails if the file has become shorter and no longer contains the whole range.
    [[nodiscard]] Reading readAt(std::int64_t offset, std::span<std::uint8_t> out) const override;
    [[nodiscard]] const FileIdentity& identity() const { return identity_; }

  private:
    FileSource(files::FileDescriptor file, FileIdentity identity, const std::atomic<bool>& stop)
        : file_(std::move(file)), identity_(identity), stop_(&stop) {}

    files::FileDescriptor file_;
    FileIdentity identity_;
    const std::atomic<bool>* stop_;
};

/// For one thread. The result of at() ends early at the end of the source and before an offset that
/// cannot be read; failure() distinguishes the two cases. Data after an unreadable offset can still
/// be read.
class SourceWindow {
  public:
    explicit SourceWindow(const ByteSource& source);

    /// The bytes from `offset` on: at least `lookAhead` of them, fewer only at the end of the
    /// source and before an offset that cannot be read. Valid until the next call.
    [[nodiscard]] Bytes at(std::int64_t offset);
    /// The error of the last read of the source if that read was short; otherwise empty.
    [[nodiscard]] const std::optional<Error>& failure() const { return failure_; }

    /// Enough for four consecutive frames of any kind.
    static constexpr std::size_t lookAhead = 4 * maxFrameBytes + headerBytes;

  private:
    [[nodiscard]] bool mustRead(std::int64_t offset, std::int64_t wanted) const;
    [[nodiscard]] std::int64_t end() const { return start_ + static_cast<std::int64_t>(filled_); }

    const ByteSource* source_;
    std::vector<std::uint8_t> store_;
    std::int64_t start_ = 0; ///< the offset in the source at which the buffer begins
    std::size_t filled_ = 0;
    std::optional<Error> failure_;
};

} // namespace sonarith::mp3
