// SPDX-License-Identifier: GPL-3.0-or-later
// What the MP3 road reads from: a file, or bytes in memory, at any place and from several threads
// at once. And a window over it for those who go through it from front to back. No formats here.
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

class ByteSource {
  public:
    virtual ~ByteSource() = default;
    /// Does not change while the source lives.
    [[nodiscard]] virtual std::int64_t size() const = 0;
    /// Fills `out` from `offset` on. Precondition: all of it lies within size().
    [[nodiscard]] virtual Status readAt(std::int64_t offset, std::span<std::uint8_t> out) const = 0;
};

/// Bytes that somebody else keeps.
class MemorySource : public ByteSource {
  public:
    explicit MemorySource(Bytes bytes) : bytes_(bytes) {}
    [[nodiscard]] std::int64_t size() const override {
        return static_cast<std::int64_t>(bytes_.size());
    }
    [[nodiscard]] Status readAt(std::int64_t offset, std::span<std::uint8_t> out) const override;

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
    /// reading fails, so that whoever goes through the file comes to an end; it must outlive the
    /// source.
    [[nodiscard]] static Result<std::unique_ptr<FileSource>> open(const std::filesystem::path& path,
                                                                  const std::atomic<bool>& stop);

    [[nodiscard]] std::int64_t size() const override { return identity_.bytes; }
    /// A file that has become shorter than it was is a failure.
    [[nodiscard]] Status readAt(std::int64_t offset, std::span<std::uint8_t> out) const override;
    [[nodiscard]] const FileIdentity& identity() const { return identity_; }

  private:
    FileSource(std::filesystem::path path, files::FileDescriptor file, FileIdentity identity,
               const std::atomic<bool>& stop)
        : path_(std::move(path)), file_(std::move(file)), identity_(identity), stop_(&stop) {}

    std::filesystem::path path_;
    files::FileDescriptor file_;
    FileIdentity identity_;
    const std::atomic<bool>* stop_;
};

/// For one thread. A failed reading looks like the end of the source; `failure` tells them apart.
class SourceWindow {
  public:
    explicit SourceWindow(const ByteSource& source);

    /// The bytes from `offset` on: at least `lookAhead` of them, fewer only at the end of the
    /// source. They stay until the next call.
    [[nodiscard]] Bytes at(std::int64_t offset);
    [[nodiscard]] const std::optional<Error>& failure() const { return failure_; }

    /// Enough for four frames of any kind in a row.
    static constexpr std::size_t lookAhead = 4 * maxFrameBytes + headerBytes;

  private:
    const ByteSource* source_;
    std::vector<std::uint8_t> store_;
    std::int64_t start_ = 0; ///< where in the source the store begins
    std::size_t filled_ = 0;
    std::optional<Error> failure_;
};

} // namespace sonarith::mp3
