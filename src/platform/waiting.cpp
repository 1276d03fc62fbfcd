// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/waiting.h"

namespace sonarith {

void Completion::complete() {
    const std::lock_guard lock(mutex_);
    complete_ = true;
    changed_.notify_all();
}

bool Completion::isComplete() const {
    const std::lock_guard lock(mutex_);
    return complete_;
}

bool Completion::restFor(std::chrono::milliseconds bound) const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, bound, [this] { return complete_; });
}

Waiting::Outcome PlainWaiting::wait(const Completion& completion, Duration bound) {
    return completion.restFor(bound) ? Outcome::done : Outcome::late;
}

} // namespace sonarith
