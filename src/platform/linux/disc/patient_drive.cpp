// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/patient_drive.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <utility>

#include "platform/linux/waiting/release_elsewhere.h"

namespace sonarith::disc {

/// What is known about the drive, and which results of running calls are still wanted. The logic
/// thread and the thread of the calls share this state.
struct PatientDrive::Known {
    std::mutex mutex;
    bool present = false;
    bool loading = false;
    std::optional<Loaded> loaded; ///< the result of the last load, until it is fetched
    /// How often the tray was opened. The result of a call that began before the last opening is
    /// ignored.
    std::int64_t trayOpenings = 0;
    /// Loads are numbered. Only the load with the number `wantedLoad` may set `loaded`. A new load
    /// increases `wantedLoad`. openTray() and a load() that times out also increase it, because the
    /// result of the running load is then not wanted.
    std::int64_t wantedLoad = 0;
};

PatientDrive::PatientDrive(std::shared_ptr<Drive> drive, Patience patience, std::string hangingText,
                           waiting::Services services)
    : drive_(std::move(drive)),
      patience_(patience),
      hangingText_(std::move(hangingText)),
      notices_(services.notices),
      known_(std::make_shared<Known>()),
      calls_(services.threads, services.waiting) {}

/// Returns whether the load has ended within the bound.
bool PatientDrive::beginLoad(std::chrono::milliseconds bound) {
    std::int64_t number = 0;
    std::int64_t trayOpenings = 0;
    {
        const std::lock_guard lock(known_->mutex);
        known_->loading = true;
        known_->loaded.reset();
        number = ++known_->wantedLoad;
        trayOpenings = known_->trayOpenings;
    }
    loadBegan_ = Clock::now();
    const auto read = [drive = drive_, known = known_, number, trayOpenings] {
        Loaded loaded = drive->load();
        if (loaded.disc) {
            loaded.disc = waiting::releasedElsewhere(std::move(loaded.disc));
        }
        const std::lock_guard lock(known->mutex);
        known->loading = false;
        if (trayOpenings == known->trayOpenings) {
            known->present = loaded.disc != nullptr;
        }
        if (number == known->wantedLoad) {
            known->loaded = std::move(loaded);
        }
    };
    const auto state = calls_.send(bound, read);
    if (state == waiting::BlockingCalls::CommandState::refused) {
        const std::lock_guard lock(known_->mutex);
        known_->loading = false;
    }
    return state == waiting::BlockingCalls::CommandState::done;
}

std::optional<Loaded> PatientDrive::takeLoaded() {
    const std::lock_guard lock(known_->mutex);
    return std::exchange(known_->loaded, std::nullopt);
}

Loaded PatientDrive::load() {
    reportResponding();
    bool underWay = false;
    {
        const std::lock_guard lock(known_->mutex);
        underWay = known_->loading;
    }
    bool responds = true;
    std::optional<Loaded> loaded;
    if (underWay) {
        responds = !loadTimedOut_ && calls_.finish(patience_.load);
        loaded = responds ? takeLoaded() : std::nullopt;
    }
    if (responds && !loaded) {
        loaded = beginLoad(patience_.load) ? takeLoaded() : std::nullopt;
    }
    loadTimedOut_ = !loaded;
    if (loaded) {
        return std::move(*loaded);
    }
    {
        const std::lock_guard lock(known_->mutex);
        ++known_->wantedLoad;
        known_->loaded.reset();
        known_->present = false;
    }
    reportHanging();
    return noDisc(DeviceProblem::hung, hangingText_);
}

std::optional<Loaded> PatientDrive::loadSoon() {
    reportResponding();
    bool begins = false;
    {
        const std::lock_guard lock(known_->mutex);
        begins = !known_->loading && !known_->loaded;
    }
    if (begins) {
        loadTimedOut_ = false;
        (void)beginLoad(tableMoment);
    }
    std::optional<Loaded> loaded = takeLoaded();
    if (!loaded && Clock::now() - loadBegan_ >= patience_.load) {
        reportHanging();
    }
    return loaded;
}

bool PatientDrive::mediaPresent() {
    reportResponding();
    // The query is sent only if no call is running: queued queries would all reach the drive later.
    if (calls_.idle()) {
        std::int64_t trayOpenings = 0;
        {
            const std::lock_guard lock(known_->mutex);
            trayOpenings = known_->trayOpenings;
        }
        calls_.send(mediumMoment, [drive = drive_, known = known_, trayOpenings] {
            const bool present = drive->mediaPresent();
            const std::lock_guard lock(known->mutex);
            if (trayOpenings == known->trayOpenings) {
                known->present = present;
            }
        });
    }
    const std::lock_guard lock(known_->mutex);
    return known_->present;
}

void PatientDrive::openTray() {
    {
        const std::lock_guard lock(known_->mutex);
        ++known_->trayOpenings;
        ++known_->wantedLoad;
        known_->loaded.reset();
        known_->present = false;
    }
    calls_.send(patience_.other, [drive = drive_] { drive->openTray(); });
}

void PatientDrive::closeTray() {
    calls_.send(patience_.other, [drive = drive_] { drive->closeTray(); });
}

void PatientDrive::reportHanging() {
    if (!calls_.idle() && !std::exchange(hangingReported_, true)) {
        notices_.report({hangingText_, name()});
    }
}

void PatientDrive::reportResponding() {
    if (hangingReported_ && calls_.idle()) {
        hangingReported_ = false;
        notices_.settled(name(), "Responding again: " + name() + ".");
    }
}

} // namespace sonarith::disc
