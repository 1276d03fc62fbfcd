// SPDX-License-Identifier: GPL-3.0-or-later
// The decoding of one MP3 file to one WAV file on threads of its own: one object is one attempt.
// How it is done is in decoding.h; here is only who waits for what.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/mp3/decode_result.h"
#include "platform/linux/mp3/decoding.h"
#include "platform/linux/mp3/progress.h"
#include "platform/linux/sound/abandonable_thread.h"
#include "platform/linux/sound/pending_saves.h"

namespace sonarith::mp3 {

/// The files of a decoding that was completed, as they were then.
struct CompletedDecoding {
    DecodeResult result;
    FileIdentity source;
    FileIdentity target;
};

/// Life cycle:
///
///     constructed  ->  busy  ->  over           it came to its end
///                            ->  stopped -> over    `stop`, or the end of the object
///
/// busy and over follow each other at once: the WAV has its name by then. A stopped decoding is not
/// busy any more, but only over when the disk has taken what was decoded; that may last, and the
/// thread goes on alone when the object is gone. Until it is over, it keeps its turn for the target
/// (target_turn.h), so that the next decoding of that file begins behind it.
///
/// Threads: one thread constructs, stops and destroys, and never waits for a disk. Any thread may
/// call the const members. The thread of the decoding owns all that it touches; so does `report`.
class DecodeJob {
  public:
    /// Called once, on the thread of the decoding, when it is as good as over; not if it was
    /// spared. It must own what it uses, as it may be called after the job is gone.
    using Report = std::function<void(const DecodeResult&)>;

    /// Begins. If `former` is of the same two files, and neither has changed since, nothing is
    /// done, and its result is the result. It is among `saves` until it is over.
    DecodeJob(DecodeOrder order, Report report, std::shared_ptr<sound::PendingSaves> saves,
              std::optional<CompletedDecoding> former = std::nullopt);
    ~DecodeJob() { stop(std::chrono::milliseconds{0}); }
    DecodeJob(const DecodeJob&) = delete;
    DecodeJob& operator=(const DecodeJob&) = delete;

    /// Ends it, if it has not ended, and returns when it is over, or after `patience`.
    void stop(std::chrono::milliseconds patience);
    /// True from the constructor's return until it is over or stopped.
    [[nodiscard]] bool busy() const;
    /// Nothing of it is going on any more.
    [[nodiscard]] bool over() const;
    /// Waits until it is over, for `patience` at most; whether it is.
    bool awaitEnd(std::chrono::milliseconds patience) const;
    [[nodiscard]] const Progress& progress() const;

    [[nodiscard]] bool isFor(const DecodeOrder& order) const;
    /// Precondition: over.
    [[nodiscard]] const DecodeResult& result() const;
    /// If it is over and was completed.
    [[nodiscard]] std::optional<CompletedDecoding> completed() const;

  private:
    struct Run;
    std::shared_ptr<Run> run_; ///< shared with its thread
    std::optional<sound::AbandonableThread> thread_;
};

} // namespace sonarith::mp3
