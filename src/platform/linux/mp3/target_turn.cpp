// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/target_turn.h"

#include <condition_variable>
#include <mutex>
#include <set>
#include <utility>

#include <sys/stat.h>

namespace sonarith::mp3 {

struct TargetTurn::Table {
    std::mutex mutex;
    std::condition_variable changed;
    std::set<Place> taken;
};

TargetTurn::Table& TargetTurn::table() {
    // Never destroyed: a thread that was left behind may use the table until the process ends.
    static auto* const only = new Table;
    return *only;
}

std::optional<TargetTurn> TargetTurn::take(const files::SavePlace& place,
                                           const std::atomic<bool>& stop) {
    struct stat folder {};
    static_cast<void>(::fstat(place.folder.get(), &folder)); // cannot fail: the folder is open
    Place wanted(folder.st_dev, folder.st_ino, place.name);
    Table& turns = table();
    std::unique_lock lock(turns.mutex);
    turns.changed.wait(lock, [&] { return stop || !turns.taken.contains(wanted); });
    if (stop) {
        return std::nullopt;
    }
    turns.taken.insert(wanted);
    return TargetTurn(std::move(wanted));
}

void TargetTurn::wakeWaiting() {
    Table& turns = table();
    // The lock makes sure that a thread that has read `stop` as false is already waiting when the
    // notification is sent.
    { const std::lock_guard lock(turns.mutex); }
    turns.changed.notify_all();
}

TargetTurn::~TargetTurn() {
    if (place_) {
        Table& turns = table();
        const std::lock_guard lock(turns.mutex);
        turns.taken.erase(*place_);
        turns.changed.notify_all();
    }
}

TargetTurn::TargetTurn(TargetTurn&& other) noexcept
    : place_(std::exchange(other.place_, std::nullopt)) {}

} // namespace sonarith::mp3
