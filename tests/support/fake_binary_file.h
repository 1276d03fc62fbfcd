// SPDX-License-Identifier: GPL-3.0-or-later
// An open file of FakeFileSystem, with its content in memory. Like a real open file, it stays
// usable when the file is renamed or removed.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/binary_file.h"

namespace sonarith::test {

class FakeBinaryFile final : public BinaryFile {
  public:
    enum class Use { length, read, write };
    /// Called at the start of length(), read() and write(), for example to log the call; `offset`
    /// and `bytes` are 0 for length(). If the gate returns an error, the call fails with this
    /// error.
    using Gate =
        std::function<std::optional<Error>(Use use, std::int64_t offset, std::size_t bytes)>;

    FakeBinaryFile(std::shared_ptr<std::string> content, FileAccess access, Gate gate)
        : content_(std::move(content)), access_(access), gate_(std::move(gate)) {}

    [[nodiscard]] Result<std::int64_t> length() const override {
        if (const auto refusal = gate_(Use::length, 0, 0)) {
            return *refusal;
        }
        return static_cast<std::int64_t>(content_->size());
    }
    [[nodiscard]] Result<std::size_t> read(std::int64_t offset,
                                           std::span<std::byte> into) override {
        if (const auto refusal = refusalOf(Use::read, FileAccess::write, offset, into.size())) {
            return *refusal;
        }
        const auto start = static_cast<std::uint64_t>(offset);
        if (start >= content_->size()) {
            return std::size_t{0};
        }
        const std::size_t count = std::min<std::size_t>(into.size(), content_->size() - start);
        std::transform(content_->begin() + offset,
                       content_->begin() + offset + static_cast<std::ptrdiff_t>(count),
                       into.begin(), [](char c) { return static_cast<std::byte>(c); });
        return count;
    }
    Status write(std::int64_t offset, std::span<const std::byte> bytes) override {
        if (const auto refusal = refusalOf(Use::write, FileAccess::read, offset, bytes.size())) {
            return *refusal;
        }
        if (bytes.empty()) {
            return {};
        }
        const auto end = static_cast<std::size_t>(offset) + bytes.size();
        content_->resize(std::max(content_->size(), end));
        std::transform(bytes.begin(), bytes.end(), content_->begin() + offset,
                       [](std::byte b) { return static_cast<char>(b); });
        return {};
    }

  private:
    [[nodiscard]] std::optional<Error> refusalOf(Use use, FileAccess wrongAccess,
                                                 std::int64_t offset, std::size_t bytes) const {
        if (const auto scripted = gate_(use, offset, bytes)) {
            return scripted;
        }
        if (offset < 0) {
            return Error{ErrorNumber::badRecordNumber, "Bad record number"};
        }
        if (access_ == wrongAccess) {
            return Error{ErrorNumber::badFileMode, "Bad file mode"};
        }
        return std::nullopt;
    }

    std::shared_ptr<std::string> content_;
    FileAccess access_;
    Gate gate_;
};

} // namespace sonarith::test
