// SPDX-License-Identifier: GPL-3.0-or-later
// What MP3 streams are read from: a file, or bytes in memory, at any place and from several threads
// at once. And a window over it for reading from front to back. No formats here.
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

/// What a reading gave, and why it gave no more.
struct Reading {
    std::size_t bytes = 0; ///< at the head of the buffer: all that was asked for, or a failure
    std::optional<Error> failure;
};

class ByteSource {
  public:
    virtual ~ByteSource() = default;
    /// Does not change while the source lives.
    [[nodiscard]] virtual std::int64_t size() const = 0;
    /// Fills `out` from `offset` on, as far as that can be read.
    /// Precondition: all of it lies within size().
    [[nodiscard]] virtual Reading readAt(std::int64_t offset,
                                         std::span<std::uint8_t> out) const = 0;
};

/// Bytes that their owner keeps for longer than the source lives.
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

/// Which file it was, and in what state: two that are equal were not changed in between.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t bytes = 0;
    std::int64_t modifiedSeconds = 0;
    std::int64_t modifiedNanoseconds = 0;
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;

    /// Empty if there is no such file.
    [[nodiscard]] static std::optional<FileIdentity> of(const std::filesystem::path& path);
    [[nodiscard]] static std::optional<FileIdentity> of(const files::FileDescriptor& file);
};

class FileSource : public ByteSource {
  public:
    /// Only plain files: a pipe could hold the caller up for ever. Once `stop` is true every
    /// reading fails, so that a scan of the file ends; it must outlive the source. The texts of
    /// failures are the system's words alone, without the path.
    [[nodiscard]] static Result<std::unique_ptr<FileSource>> open(const std::filesystem::path& path,
                                                                  const std::atomic<bool>& stop);

    [[nodiscard]] std::int64_t size() const override { return identity_.bytes; }
    /// A file that has become shorter than it was is a failure.
    [[nodiscard]] Reading readAt(std::int64_t offset, std::span<std::uint8_t> out) const override;
    [[nodiscard]] const FileIdentity& identity() const { return identity_; }

  private:
    FileSource(files::FileDescriptor file, FileIdentity identity, const std::atomic<bool>& stop)
        : file_(std::move(file)), identity_(identity), stop_(&stop) {}

    files::FileDescriptor file_;
    FileIdentity identity_;
    const std::atomic<bool>* stop_;
};

/// For one thread. A place that cannot be read looks like the end of the source; `failure` tells
/// them apart. What lies behind such a place can be read again.
class SourceWindow {
  public:
    explicit SourceWindow(const ByteSource& source);

    /// The bytes from `offset` on: at least `lookAhead` of them, fewer only at the end of the
    /// source and before a place that cannot be read. They stay until the next call.
    [[nodiscard]] Bytes at(std::int64_t offset);
    /// Why the window ends where it does, if not because it is full or the source ends.
    [[nodiscard]] const std::optional<Error>& failure() const { return failure_; }

    /// Enough for four frames of any kind in a row.
    static constexpr std::size_t lookAhead = 4 * maxFrameBytes + headerBytes;

  private:
    [[nodiscard]] bool mustRead(std::int64_t offset, std::int64_t wanted) const;
    [[nodiscard]] std::int64_t end() const { return start_ + static_cast<std::int64_t>(filled_); }

    const ByteSource* source_;
    std::vector<std::uint8_t> store_;
    std::int64_t start_ = 0; ///< where in the source the store begins
    std::size_t filled_ = 0;
    std::optional<Error> failure_;
};

} // namespace sonarith::mp3
