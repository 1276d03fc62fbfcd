// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes one MP3 file to one WAV file on separate threads: one object is one attempt. The decoding
// itself is in decoding.h; this is only the synchronisation.
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

/// The files of a completed decoding, with their state at that time.
struct CompletedDecoding {
    DecodeResult result;
    FileIdentity source;
    FileIdentity target;
};

/// Life cycle:
///
///     constructed  ->  busy  ->  over           it has ended by itself
///                            ->  stopped -> over    by `stop` or the destructor
///
/// A decoding that is not stopped changes from busy to over once the WAV has its name. A stopped
/// decoding is no longer busy, but over only when the disk has stored the decoded part; that may
/// take long, and the thread continues alone after the object is destroyed. Until it is over, it
/// keeps its turn for the target (target_turn.h), so that the next decoding of that file begins
/// after it.
///
/// Threads: one thread constructs, stops and destroys the object, and never waits for a disk. The
/// const members are thread-safe. The thread of the decoding and `report` own everything that they
/// access.
class DecodeJob {
  public:
    /// Called once, on the thread of the decoding, just before it is over; not called if the
    /// decoding was skipped. It must own everything that it uses, as it may be called after the job
    /// is destroyed.
    using Report = std::function<void(const DecodeResult&)>;

    /// Starts the decoding. If `former` is a decoding of the same two files and neither has changed
    /// since, nothing is decoded, and its result is reused. The decoding counts among `saves` until
    /// it is over. If no thread can be started (Division::starter), the decoding has failed and is
    /// over at once.
    DecodeJob(DecodeOrder order, Report report, std::shared_ptr<sound::PendingSaves> saves,
              std::optional<CompletedDecoding> former = std::nullopt);
    ~DecodeJob() { stop(std::chrono::milliseconds{0}); }
    DecodeJob(const DecodeJob&) = delete;
    DecodeJob& operator=(const DecodeJob&) = delete;

    /// Stops the decoding if it has not ended, and returns when it is over, or after `patience`.
    void stop(std::chrono::milliseconds patience);
    /// True from the constructor's return until it is over or stopped.
    [[nodiscard]] bool busy() const;
    /// Whether all of its work has ended.
    [[nodiscard]] bool over() const;
    /// Waits at most `patience` until it is over; returns whether it is.
    bool awaitEnd(std::chrono::milliseconds patience) const;
    [[nodiscard]] const Progress& progress() const;

    [[nodiscard]] bool isFor(const DecodeOrder& order) const;
    /// Precondition: over.
    [[nodiscard]] const DecodeResult& result() const;
    /// Not empty if it is over and was completed.
    [[nodiscard]] std::optional<CompletedDecoding> completed() const;

  private:
    struct Run;
    std::shared_ptr<Run> run_; ///< shared with its thread
    sound::AbandonableThread thread_;
};

} // namespace sonarith::mp3
