// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/system/patient_calls.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace sonarith::system_information {

/// Shared with its thread, which may outlive its owner.
struct PatientCalls::Worker {
    /// The body of the thread.
    void run() {
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [this] { return quitting || call; });
            if (quitting) {
                return;
            }
            lock.unlock();
            call();
            lock.lock();
            call = nullptr;
            changed.notify_all();
        }
    }

    /// Only for a worker that is idle. Whether the call has returned in time.
    bool doWithin(std::chrono::milliseconds patience, std::function<void()> wanted) {
        std::unique_lock lock(mutex);
        call = std::move(wanted);
        changed.notify_all();
        return changed.wait_for(lock, patience, [this] { return !call; });
    }

    bool isIdle() {
        const std::lock_guard lock(mutex);
        return !call;
    }

    void quit() {
        const std::lock_guard lock(mutex);
        quitting = true;
        changed.notify_all();
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::function<void()> call; ///< none: idle
    bool quitting = false;
};

PatientCalls::~PatientCalls() {
    if (idle_) {
        idle_->quit();
    }
    for (const auto& [thing, worker] : late_) {
        worker->quit();
    }
}

bool PatientCalls::callWithin(const std::string& thing, std::function<void()> call) {
    takeBackThoseThatAnswered();
    if (late_.contains(thing)) {
        return false;
    }
    if (!idle_) {
        idle_ = std::make_shared<Worker>();
        // Nobody can wait for its end: the call may never return.
        std::thread([worker = idle_] { worker->run(); }).detach();
    }
    if (idle_->doWithin(patience_, std::move(call))) {
        return true;
    }
    late_.emplace(thing, std::move(idle_));
    return false;
}

void PatientCalls::takeBackThoseThatAnswered() {
    std::erase_if(late_, [this](const auto& entry) {
        const std::shared_ptr<Worker>& worker = entry.second;
        if (!worker->isIdle()) {
            return false;
        }
        if (idle_) {
            worker->quit();
        } else {
            idle_ = worker;
        }
        return true;
    });
}

std::size_t PatientCalls::unanswered() {
    takeBackThoseThatAnswered();
    return late_.size();
}

} // namespace sonarith::system_information
