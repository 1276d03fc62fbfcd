// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/patient_drive.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>

namespace sonarith::disc {

/// All that the thread touches, since it may outlive whoever asked. Does one job after the other.
struct PatientDrive::Worker {
    using Job = std::function<void(Drive&)>;

    explicit Worker(std::shared_ptr<Drive> served) : drive(std::move(served)) {}

    /// The body of the thread.
    void run() {
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [this] { return quitting || !jobs.empty(); });
            if (quitting) {
                return;
            }
            {
                const Job job = std::move(jobs.front());
                jobs.pop_front();
                lock.unlock();
                job(*drive);
            }
            lock.lock();
            ++done;
            changed.notify_all();
        }
    }

    /// Whether the job was done in time; it is done in any case.
    bool doWithin(std::chrono::milliseconds patience, Job job) {
        std::unique_lock lock(mutex);
        jobs.push_back(std::move(job));
        const std::int64_t number = ++given;
        changed.notify_all();
        return changed.wait_for(lock, patience, [&] { return done >= number; });
    }

    bool idle() const {
        const std::lock_guard lock(mutex);
        return done == given;
    }

    void quit() {
        const std::lock_guard lock(mutex);
        quitting = true;
        changed.notify_all();
    }

    const std::shared_ptr<Drive> drive;
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<Job> jobs; ///< those that have not begun
    std::int64_t given = 0;
    std::int64_t done = 0;
    bool quitting = false;
};

PatientDrive::PatientDrive(std::shared_ptr<Drive> drive, Patience patience, std::string noAnswer)
    : patience_(patience),
      noAnswer_(std::move(noAnswer)),
      worker_(std::make_shared<Worker>(std::move(drive))),
      thread_([worker = worker_] { worker->run(); }) {}

PatientDrive::~PatientDrive() {
    worker_->quit();
    thread_.leave(patience_.other);
}

template <typename Answer>
std::optional<Answer> PatientDrive::ask(std::chrono::milliseconds patience,
                                        Answer (Drive::*question)()) {
    auto answer = std::make_shared<std::optional<Answer>>();
    const bool came = worker_->doWithin(
        patience, [answer, question](Drive& drive) { *answer = (drive.*question)(); });
    return came ? std::move(*answer) : std::nullopt;
}

Loaded PatientDrive::load() {
    if (loadUnanswered_ && !worker_->idle()) {
        return noDisc(DeviceProblem::hung, noAnswer_);
    }
    std::optional<Loaded> loaded = ask(patience_.load, &Drive::load);
    loadUnanswered_ = !loaded;
    present_ = loaded && loaded->disc;
    return loaded ? std::move(*loaded) : noDisc(DeviceProblem::hung, noAnswer_);
}

bool PatientDrive::mediaPresent() {
    // Questions that pile up would all be asked one day.
    if (worker_->idle()) {
        present_ = ask(patience_.other, &Drive::mediaPresent).value_or(present_);
    }
    return present_;
}

void PatientDrive::openTray() {
    present_ = false;
    worker_->doWithin(patience_.other, [](Drive& drive) { drive.openTray(); });
}

void PatientDrive::closeTray() {
    worker_->doWithin(patience_.other, [](Drive& drive) { drive.closeTray(); });
}

} // namespace sonarith::disc
