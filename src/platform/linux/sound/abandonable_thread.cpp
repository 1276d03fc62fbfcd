// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/abandonable_thread.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace sonarith::sound {

struct AbandonableThread::State {
    std::mutex mutex;
    std::condition_variable changed;
    bool finished = false;
    std::thread thread;
};

Status AbandonableThread::start(std::function<void()> body, const ThreadStarter& starter) {
    const auto shared = std::make_shared<State>();
    Result<std::thread> thread = starter([shared, run = std::move(body)]() mutable {
        run();
        run = nullptr; // destroys the objects that `body` owns, before leave() is notified
        const std::lock_guard lock(shared->mutex);
        shared->finished = true;
        shared->changed.notify_all();
    });
    if (!thread.ok()) {
        return thread.error();
    }
    shared->thread = std::move(thread.value());
    state_ = shared;
    return {};
}

AbandonableThread::~AbandonableThread() {
    leave(std::chrono::milliseconds{0});
}

void AbandonableThread::leave(std::chrono::milliseconds patience) {
    if (!state_ || std::exchange(left_, true)) {
        return;
    }
    bool finished = false;
    {
        std::unique_lock lock(state_->mutex);
        finished = state_->changed.wait_for(lock, patience, [this] { return state_->finished; });
    }
    if (finished) {
        state_->thread.join();
    } else {
        state_->thread.detach();
    }
}

} // namespace sonarith::sound
