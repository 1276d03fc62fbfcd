// SPDX-License-Identifier: GPL-3.0-or-later
// What the logic asks of a recording's writer (a file, a save, an end), and what becomes of it. The
// logic waits for a bounded time; the order stands all the same. It knows no frames and no files.
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

/// Any thread may call any member. One thread at a time is the writer: the one whose turn it is.
class RecordingOrders {
  public:
    using Patience = std::chrono::milliseconds;
    /// Begins with 0. It ends when its thread hangs and another one takes over.
    using Turn = int;
    /// Called under this object's lock, so that it cannot come too late.
    using Call = std::function<void()>;

    /// The writer tries up to `candidates` folders. `saves` may be a null pointer.
    RecordingOrders(std::size_t candidates, std::shared_ptr<PendingSaves> saves)
        : candidates_(candidates), saves_(std::move(saves)) {}

    // The logic's side.

    /// Whether there is a file; empty if that is not known within `patience`.
    [[nodiscard]] std::optional<Status> begunWithin(Patience patience);
    /// Orders a save, or waits on for the last one if that was not done in time and has the same
    /// name; empty if it is not done within `patience`. While one is under way, another fails.
    [[nodiscard]] std::optional<Status> saveWithin(Patience patience,
                                                   const std::filesystem::path& target);
    /// No more orders come. Returns whether a save is still to be done.
    bool close();
    /// Whether the writer has closed its file.
    [[nodiscard]] bool finishedWithin(Patience patience);

    // For those that watch over the writer.

    /// The turn that follows one which hangs in a candidate.
    struct Relief {
        Turn turn;
        std::size_t hanging; ///< the number of the candidate
    };
    /// Ends the writer's turn if it tries one candidate for longer than `patience`. Empty if there
    /// is a file, if there is none anywhere, or if none is wanted any more.
    [[nodiscard]] std::optional<Relief> relieveWithin(Patience patience);
    /// Calls `onLate` if the save that is under way is not done within `patience`.
    void watchSave(Patience patience, const Call& onLate);

    // The writer's side. False: its turn is over, or its work is not wanted any more.

    [[nodiscard]] bool tries(Turn turn, std::size_t candidate);
    /// There is a file. `onBegun` is called before anybody learns of it, as in the next ones.
    [[nodiscard]] bool begins(Turn turn, const Call& onBegun);
    /// There is no file anywhere.
    [[nodiscard]] bool fails(Turn turn, const Error& error, const Call& onFailed);
    /// Waits for the next save; empty once there will be none.
    [[nodiscard]] std::optional<std::filesystem::path> nextSave();
    void saved(const Status& outcome, const Call& onDone);
    /// Whether what is recorded is not wanted any more.
    [[nodiscard]] bool abandoned() const;
    /// The number of the candidate that is being tried, or has the file.
    [[nodiscard]] std::size_t candidate() const;
    void finished();

  private:
    // Under mutex_, but for the last.
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
    std::optional<Status> outcome_; ///< of the last save, until somebody learns of it
    bool closed_ = false;
    bool finished_ = false;
};

} // namespace sonarith::sound
