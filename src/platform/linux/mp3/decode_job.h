// SPDX-License-Identifier: GPL-3.0-or-later
// The decoding of one MP3 file to one WAV file, on threads of its own, from the start to the name
// that the WAV takes. One object is one attempt.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <thread>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/mp3/pcm_reader.h"
#include "platform/linux/mp3/progress.h"
#include "platform/linux/mp3/segment_workers.h"
#include "platform/linux/mp3/wav_target.h"

namespace sonarith::mp3 {

enum class DecodeOutcome {
    none,      ///< no decoding has ended yet
    completed, ///< the WAV has all there is
    stopped,   ///< the WAV has all up to the stop; there is none if that was nothing
    noFrames,  ///< nothing to decode was found, and nothing was written
    failed,    ///< nothing was written; `error` has the reason
};

enum class DecodeRoad {
    none,
    sequential,
    segments,
    mixed, ///< segments up to a frame that the library gives up, and one pass from there on
};

/// What became of a decoding: more than the product shows anywhere.
struct DecodeResult {
    DecodeOutcome outcome = DecodeOutcome::none;
    DecodeRoad road = DecodeRoad::none;
    PcmFormat format;
    std::int64_t samples = 0; ///< per channel
    DecodeCount count;
    std::optional<Error> error;
};

class DecodeJob {
  public:
    /// Begins. On one thread it goes the sequential road.
    DecodeJob(std::filesystem::path source, std::filesystem::path target, const Division& division);
    ~DecodeJob() { stop(); }
    DecodeJob(const DecodeJob&) = delete;
    DecodeJob& operator=(const DecodeJob&) = delete;

    /// Ends it, if it has not ended, and returns when what is decoded has its name.
    void stop();
    /// From the constructor's return until the end. Any thread may ask this and `progress`.
    [[nodiscard]] bool busy() const { return busy_; }
    [[nodiscard]] const Progress& progress() const { return progress_; }

    [[nodiscard]] bool isFor(const std::filesystem::path& source,
                             const std::filesystem::path& target) const;
    /// It was completed, and neither file has been changed since. False while busy.
    [[nodiscard]] bool stillHolds() const;
    /// Precondition: not busy.
    [[nodiscard]] const DecodeResult& result() const { return result_; }

  private:
    void run();
    [[nodiscard]] DecodeResult decode();
    [[nodiscard]] Decoded decodeSequentially(PcmReader& reader, WavTarget& target);
    void finish(const Decoded& decoded, WavTarget& target, DecodeResult& result) const;

    std::filesystem::path source_;
    std::filesystem::path target_;
    Division division_;
    Progress progress_;
    std::atomic<bool> stop_ = false;
    std::atomic<bool> busy_ = true;
    // Written by the thread while busy, read afterwards.
    DecodeResult result_;
    std::optional<FileIdentity> sourceIdentity_;
    std::optional<FileIdentity> targetIdentity_;
    std::thread thread_; ///< last: it uses the others
};

} // namespace sonarith::mp3
