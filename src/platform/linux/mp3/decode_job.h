// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes one MP3 file to one WAV file on separate threads: one object is one attempt. This header
// only synchronises the threads; the decoding itself is in decoding.h.
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

/// A completed decoding, with the states of its two files: of the source when it was opened, and of
/// the target when the WAV was complete.
struct CompletedDecoding {
    DecodeResult result;
    FileIdentity source;
    FileIdentity target;
};

/// Life cycle:
///
///     constructed  ->  busy  ->  over                the decoding has ended by itself
///                            ->  stopped  ->  over   `stop` or the destructor was called
///
/// The WAV file has no name until it is complete. A decoding that is not stopped changes from busy
/// to over as soon as the WAV file has its name, or as soon as it is known that no WAV file will be
/// saved. A stopped decoding is no longer busy, but it is over only when the disk has stored the
/// decoded part. That may take long; the thread continues even after the object is destroyed. As
/// long as the decoding writes, it keeps its turn for the target (target_turn.h), so that the next
/// decoding to the same file begins only afterwards.
///
/// Threads: one thread constructs, stops and destroys the object. This thread waits for a disk only
/// in stop() and awaitEnd(), and never longer than `patience`. The const members are thread-safe.
/// The thread of the decoding and `report` own everything that they access.
class DecodeJob {
  public:
    /// Called once, just before the decoding is over: on the thread of the decoding, or in the
    /// constructor if no thread can be started. Not called if the result of an earlier
    /// decoding is reused. The function must own everything that it uses, since it may be called
    /// after the job is destroyed.
    using Report = std::function<void(const DecodeResult&)>;

    /// Starts the decoding. If `former` is a decoding of the same two files and neither file has
    /// changed since, nothing is decoded, and the result of `former` is reused. The decoding
    /// is a pending save in `saves` until it is over. If Division::starter cannot start
    /// a thread, the decoding fails and is over at once.
    DecodeJob(DecodeOrder order, Report report, std::shared_ptr<sound::PendingSaves> saves,
              std::optional<CompletedDecoding> former = std::nullopt);
    ~DecodeJob() { stop(std::chrono::milliseconds{0}); }
    DecodeJob(const DecodeJob&) = delete;
    DecodeJob& operator=(const DecodeJob&) = delete;

    /// Stops the decoding if it has not ended. Returns when it is over, at the latest after
    /// `patience`.
    void stop(std::chrono::milliseconds patience);
    /// True from the constructor's return until the decoding is over or stopped.
    [[nodiscard]] bool busy() const;
    /// Whether all work of the decoding has ended.
    [[nodiscard]] bool over() const;
    /// Waits at most `patience` until the decoding is over; returns whether it is over.
    bool awaitEnd(std::chrono::milliseconds patience) const;
    [[nodiscard]] const Progress& progress() const;

    [[nodiscard]] bool isFor(const DecodeOrder& order) const;
    /// Precondition: over().
    [[nodiscard]] const DecodeResult& result() const;
    /// Empty unless the decoding is over and was completed.
    [[nodiscard]] std::optional<CompletedDecoding> completed() const;

  private:
    struct Run;
    std::shared_ptr<Run> run_; ///< shared with the thread of the decoding
    sound::AbandonableThread thread_;
};

} // namespace sonarith::mp3
