// SPDX-License-Identifier: GPL-3.0-or-later
// The work of decoding one MP3 file to one WAV file, from the opening of the source to the name of
// the WAV, on the thread that calls. Threads and life cycles are elsewhere (decode_job.h).
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
    Division division; ///< on one thread one decoder goes through the file
};

/// One attempt. Waits for the disk wherever that takes its time; nothing but `stop` is shared with
/// other threads, and Progress.
class Decoding {
  public:
    /// All that is handed in must outlive the object. After `stop` turns true, `run` gives the WAV
    /// what was decoded so far, and returns when the disk lets it.
    Decoding(const DecodeOrder& order, const std::atomic<bool>& stop, Progress& progress)
        : order_(order), stop_(stop), progress_(progress) {}

    /// Waits first for an earlier decoding that has not named this target yet.
    [[nodiscard]] DecodeResult run();
    /// The state of the source when it was opened, if it was.
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
