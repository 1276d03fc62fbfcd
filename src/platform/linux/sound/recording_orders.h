// SPDX-License-Identifier: GPL-3.0-or-later
// Passes the logic's orders (save, end) to a recording's writer. Passes the results (of creating
// the file and of each save) to the logic. The logic waits for a result only for a limited time; an
// order remains valid after a timeout. This class handles no frames and no files.
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

/// Thread-safe. One thread at a time is the writer: the thread that has the current turn.
class RecordingOrders {
  public:
    using Patience = std::chrono::milliseconds;
    /// The number of a writer, counted from 0. A turn ends when its thread hangs and another thread
    /// becomes the writer.
    using Turn = int;
    /// Called under this object's lock, so that the calls are in the order of the state's changes.
    using Call = std::function<void()>;

    /// `candidates` is the number of folders that the writer tries, one after the other. `saves`
    /// may be a null pointer.
    RecordingOrders(std::size_t candidates, std::shared_ptr<PendingSaves> saves)
        : candidates_(candidates), saves_(std::move(saves)) {}

    // The logic's side.

    /// The result of creating the file; empty if it is not known within `patience`.
    [[nodiscard]] std::optional<Status> begunWithin(Patience patience);
    /// Orders a save and waits for its result; empty if the save is not complete within
    /// `patience`. If the last save had the same name and timed out, waits for that save. While a
    /// save is running, a save with another name fails.
    [[nodiscard]] std::optional<Status> saveWithin(Patience patience,
                                                   const std::filesystem::path& target);
    /// Informs the writer that no more orders follow. Returns whether a save is still pending.
    bool close();
    /// Waits at most `patience` until the writer has closed its file; returns whether it has.
    [[nodiscard]] bool finishedWithin(Patience patience);

    // For the threads that watch the writer.

    /// Describes the turn that replaces a hanging turn.
    struct Replacement {
        Turn turn;
        std::size_t hanging; ///< the index of the folder in which the writer hangs
    };
    /// Waits while the writer tries folders. If the writer tries one folder for longer than
    /// `patience`, ends the writer's turn and returns the replacement. Returns empty as soon as the
    /// file exists, all folders have failed, the writer tries the last folder, or no file is wanted
    /// any more.
    [[nodiscard]] std::optional<Replacement> replaceWithin(Patience patience);
    /// Calls `onLate` if the running save is not complete within `patience`.
    void watchSave(Patience patience, const Call& onLate);

    // The writer's side. tries(), begins() and fails() return false if the writer's turn is over or
    // its work is not wanted any more.

    [[nodiscard]] bool tries(Turn turn, std::size_t candidate);
    /// Reports that the file was created. `onBegun` is called before any waiting thread is
    /// notified; the same applies to `onFailed` and `onDone`.
    [[nodiscard]] bool begins(Turn turn, const Call& onBegun);
    /// Reports that no file was created: all folders failed, or no writer could be started.
    [[nodiscard]] bool fails(Turn turn, const Error& error, const Call& onFailed);
    /// Waits for the next order to save; returns empty if no more follow.
    [[nodiscard]] std::optional<std::filesystem::path> nextSave();
    void saved(const Status& outcome, const Call& onDone);
    /// Whether the recorded sound is not wanted any more.
    [[nodiscard]] bool abandoned() const;
    /// The index of the folder that is being tried or contains the file.
    [[nodiscard]] std::size_t candidate() const;
    void finished();

  private:
    // Precondition of isUnwanted() and isOver(): mutex_ is locked.
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
    std::optional<Status> outcome_; ///< of the last save, until a call returns it
    bool closed_ = false;
    bool finished_ = false;
};

} // namespace sonarith::sound
