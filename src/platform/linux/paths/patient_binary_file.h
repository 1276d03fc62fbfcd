// SPDX-License-Identifier: GPL-3.0-or-later
// Wraps an open file on a disk or server that may not respond: each call runs on another thread,
// and the caller waits only a limited time. It opens no file (patient_file_system.h does).
#pragma once

#include <memory>

#include "platform/binary_file.h"
#include "platform/linux/waiting/blocking_calls.h"

namespace sonarith {

/// A call that times out fails with deviceUnavailable, but continues on the other thread and may
/// still take effect; until it has ended there, all further calls fail at once. The destructor
/// closes the file on the other thread.
class PatientBinaryFile final : public BinaryFile {
  public:
    /// `threads` and `waiting` must outlive this object.
    PatientBinaryFile(std::shared_ptr<BinaryFile> file, waiting::WorkerThreads& threads,
                      Waiting& waiting, Waiting::Duration bound);
    ~PatientBinaryFile() override;
    PatientBinaryFile(const PatientBinaryFile&) = delete;
    PatientBinaryFile& operator=(const PatientBinaryFile&) = delete;

    [[nodiscard]] Result<std::int64_t> length() const override;
    [[nodiscard]] Result<std::size_t> read(std::int64_t offset, std::span<std::byte> into) override;
    Status write(std::int64_t offset, std::span<const std::byte> bytes) override;

  private:
    std::shared_ptr<BinaryFile> file_;
    const Waiting::Duration bound_;
    mutable waiting::BlockingCalls calls_;
};

} // namespace sonarith
