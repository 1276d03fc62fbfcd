// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/recording_orders.h"

#include <utility>

namespace sonarith::sound {

namespace fs = std::filesystem;

std::optional<Status> RecordingOrders::begunWithin(Patience patience) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, patience, [this] { return begun_.has_value(); });
    return begun_;
}

std::optional<Status> RecordingOrders::saveWithin(Patience patience, const fs::path& target) {
    std::unique_lock lock(mutex_);
    if (saving_ && target != target_) {
        return Status(ErrorNumber::deviceUnavailable,
                      "the recording is still being saved as \"" + target_.string() + "\"");
    }
    // True if an earlier call timed out and its save is complete now.
    const bool isKnown = outcome_ && target == target_;
    if (!saving_ && !isKnown) {
        saving_ = true;
        target_ = target;
        outcome_.reset();
        if (saves_) {
            saves_->add();
        }
        changed_.notify_all();
    }
    changed_.wait_for(lock, patience, [this] { return outcome_.has_value(); });
    return std::exchange(outcome_, std::nullopt);
}

bool RecordingOrders::close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_all();
    return saving_;
}

bool RecordingOrders::finishedWithin(Patience patience) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, patience, [this] { return finished_; });
}

std::optional<RecordingOrders::Replacement> RecordingOrders::replaceWithin(Patience patience) {
    std::unique_lock lock(mutex_);
    while (!begun_ && !isUnwanted() && candidate_ + 1 < candidates_) {
        const std::size_t watched = candidate_; // each candidate gets the full time
        if (!changed_.wait_for(lock, patience,
                               [&] { return begun_ || isUnwanted() || candidate_ != watched; })) {
            return Replacement{++turn_, watched};
        }
    }
    return std::nullopt;
}

void RecordingOrders::watchSave(Patience patience, const Call& onLate) {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, patience, [this] { return !saving_; })) {
        onLate();
    }
}

bool RecordingOrders::tries(Turn turn, std::size_t candidate) {
    const std::lock_guard lock(mutex_);
    if (isOver(turn)) {
        return false;
    }
    candidate_ = candidate;
    changed_.notify_all();
    return true;
}

bool RecordingOrders::begins(Turn turn, const Call& onBegun) {
    return endTrying(turn, {}, onBegun);
}

bool RecordingOrders::fails(Turn turn, const Error& error, const Call& onFailed) {
    return endTrying(turn, error, onFailed);
}

bool RecordingOrders::endTrying(Turn turn, const Status& begun, const Call& onEnd) {
    const std::lock_guard lock(mutex_);
    if (isOver(turn)) {
        return false;
    }
    onEnd();
    begun_ = begun;
    changed_.notify_all();
    return true;
}

std::optional<fs::path> RecordingOrders::nextSave() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return closed_ || saving_; });
    return saving_ ? std::optional(target_) : std::nullopt;
}

void RecordingOrders::saved(const Status& outcome, const Call& onDone) {
    const std::lock_guard lock(mutex_);
    onDone();
    saving_ = false;
    outcome_ = outcome;
    if (saves_) {
        saves_->remove();
    }
    changed_.notify_all();
}

bool RecordingOrders::abandoned() const {
    const std::lock_guard lock(mutex_);
    return isUnwanted();
}

std::size_t RecordingOrders::candidate() const {
    const std::lock_guard lock(mutex_);
    return candidate_;
}

void RecordingOrders::finished() {
    const std::lock_guard lock(mutex_);
    finished_ = true;
    changed_.notify_all();
}

} // namespace sonarith::sound
