// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes one MP3 file to one WAV file, from opening the source to naming the WAV. Decoding::run
// returns only when the decoding has ended; decode_job.h starts the thread that calls it.
#pragma once

#include <atomic>
#include <filesystem>
#include <optional>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/mp3/decode_result.h"
#include "platform/linux/mp3/progress.h"
#include "platform/linux/mp3/segment_workers.h"

namespace sonarith::mp3 {

struct DecodeOrder {
    std::filesystem::path source;
    std::filesystem::path target;
    Division division; ///< with one thread, the whole file is decoded in one pass
};

/// One attempt to decode a file. It waits for the disk without a time limit. Of this object and its
/// arguments, other threads may access only `stop` and the Progress during `run`.
class Decoding {
  public:
    /// All arguments must outlive the object. After `stop` becomes true, `run` saves the decoded
    /// part in the WAV and returns as soon as the disk allows.
    Decoding(const DecodeOrder& order, const std::atomic<bool>& stop, Progress& progress)
        : order_(order), stop_(stop), progress_(progress) {}

    /// First waits until an earlier decoding to the same target has ended, or until `stop` is true.
    [[nodiscard]] DecodeResult run();
    /// The state of the source when it was opened; empty if it was not opened.
    [[nodiscard]] const std::optional<FileIdentity>& sourceIdentity() const {
        return sourceIdentity_;
    }

  private:
    [[nodiscard]] DecodeResult runInTurn();
    [[nodiscard]] DecodeResult decode(const FileSource& source, const StreamSurvey& survey);
    [[nodiscard]] Decoded decodeInOnePass(PcmReader& reader, WavTarget& target) const;
    static void finish(const Decoded& decoded, WavTarget& target, DecodeResult& result);

    const DecodeOrder& order_;
    const std::atomic<bool>& stop_;
    Progress& progress_;
    std::optional<FileIdentity> sourceIdentity_;
};

} // namespace sonarith::mp3
