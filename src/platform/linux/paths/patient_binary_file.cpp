// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/patient_binary_file.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/linux/files/file_error.h"

namespace sonarith {

PatientBinaryFile::PatientBinaryFile(std::shared_ptr<BinaryFile> file,
                                     waiting::WorkerThreads& threads, Waiting& waiting,
                                     Waiting::Duration bound)
    : file_(std::move(file)), bound_(bound), calls_(threads, waiting) {}

PatientBinaryFile::~PatientBinaryFile() {
    // Closing the file may hang, too, so the destructor waits for it only briefly. Usually this is
    // long enough for the file to be closed before the next operation on its name.
    calls_.send(Waiting::plainMoment,
                [file = std::exchange(file_, nullptr)]() mutable { file.reset(); });
}

Result<std::int64_t> PatientBinaryFile::length() const {
    auto answer = calls_.ask(bound_, [file = file_] { return file->length(); });
    return answer ? *answer : fileError(ErrorNumber::deviceUnavailable);
}

Result<std::size_t> PatientBinaryFile::read(std::int64_t offset, std::span<std::byte> into) {
    // The read fills a buffer of its own, because the caller's buffer may already be destroyed when
    // a hanging read returns.
    const auto bytes = std::make_shared<std::vector<std::byte>>(into.size());
    auto answer =
        calls_.ask(bound_, [file = file_, offset, bytes] { return file->read(offset, *bytes); });
    if (!answer) {
        return fileError(ErrorNumber::deviceUnavailable);
    }
    if (answer->ok()) {
        std::copy_n(bytes->begin(), answer->value(), into.begin());
    }
    return *answer;
}

Status PatientBinaryFile::write(std::int64_t offset, std::span<const std::byte> bytes) {
    auto answer = calls_.ask(
        bound_, [file = file_, offset, copy = std::vector<std::byte>(bytes.begin(), bytes.end())] {
            return file->write(offset, copy);
        });
    return answer ? *answer : Status(fileError(ErrorNumber::deviceUnavailable));
}

} // namespace sonarith
