// SPDX-License-Identifier: GPL-3.0-or-later
// The logic's orders to a recording's writer (a file, a save, an end), and their results. The logic
// waits for a bounded time; an order remains valid after a timeout. It handles no frames and no
// files.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "platform/linux/sound/pending_saves.h"
#include "platform/result.h"

namespace sonarith::sound {

/// Thread-safe. One thread at a time is the writer: the one whose turn it is.
class RecordingOrders {
  public:
    using Patience = std::chrono::milliseconds;
    /// Starts at 0. A turn ends when its thread hangs and another one takes over.
    using Turn = int;
    /// Called under this object's lock, so that it cannot be late.
    using Call = std::function<void()>;

    /// The writer tries up to `candidates` folders. `saves` may be a null pointer.
    RecordingOrders(std::size_t candidates, std::shared_ptr<PendingSaves> saves)
        : candidates_(candidates), saves_(std::move(saves)) {}

    // The logic's side.

    /// Whether there is a file; empty if that is not known within `patience`.
    [[nodiscard]] std::optional<Status> begunWithin(Patience patience);
    /// Orders a save, or resumes waiting for the last one if that timed out and has the same name;
    /// empty if it is not complete within `patience`. While a save is running, another one fails.
    [[nodiscard]] std::optional<Status> saveWithin(Patience patience,
                                                   const std::filesystem::path& target);
    /// Ends the orders. Returns whether a save is still pending.
    bool close();
    /// Whether the writer has closed its file.
    [[nodiscard]] bool finishedWithin(Patience patience);

    // For the threads that watch the writer.

    /// The turn after one that hangs in a candidate.
    struct Replacement {
        Turn turn;
        std::size_t hanging; ///< the number of the candidate
    };
    /// Ends the writer's turn if it tries one candidate longer than `patience`. Empty if there is a
    /// file, if all candidates have failed, or if no file is wanted any more.
    [[nodiscard]] std::optional<Replacement> replaceWithin(Patience patience);
    /// Calls `onLate` if the running save is not complete within `patience`.
    void watchSave(Patience patience, const Call& onLate);

    // The writer's side. False: its turn is over, or its work is not wanted any more.

    [[nodiscard]] bool tries(Turn turn, std::size_t candidate);
    /// Reports that there is a file. `onBegun` is called before any waiting thread is notified; the
    /// same applies to the next ones.
    [[nodiscard]] bool begins(Turn turn, const Call& onBegun);
    /// Reports that no file could be created anywhere.
    [[nodiscard]] bool fails(Turn turn, const Error& error, const Call& onFailed);
    /// Waits for the next save; empty if no more follow.
    [[nodiscard]] std::optional<std::filesystem::path> nextSave();
    void saved(const Status& outcome, const Call& onDone);
    /// Whether the recorded sound is not wanted any more.
    [[nodiscard]] bool abandoned() const;
    /// The number of the candidate that is being tried, or has the file.
    [[nodiscard]] std::size_t candidate() const;
    void finished();

  private:
    // All except the last: protected by mutex_.
    [[nodiscard]] bool isUnwanted() const { return closed_ && !saving_; }
    [[nodiscard]] bool isOver(Turn turn) const { return turn != turn_ || isUnwanted(); }
    [[nodiscard]] bool endTrying(Turn turn, const Status& begun, const Call& onEnd);

    const std::size_t candidates_;
    const std::shared_ptr<PendingSaves> saves_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    Turn turn_ = 0;
    std::size_t candidate_ = 0;
    std::optional<Status> begun_;
    std::filesystem::path target_; ///< of the last save
    bool saving_ = false;
    std::optional<Status> outcome_; ///< of the last save, until it is fetched
    bool closed_ = false;
    bool finished_ = false;
};

} // namespace sonarith::sound
