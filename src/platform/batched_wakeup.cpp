// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/batched_wakeup.h"

#include <algorithm>
#include <utility>

namespace sonarith {

BatchedWakeup::BatchedWakeup(EventLoop& loop, EventLoop::Duration interval,
                             std::function<void()> handler, SilenceQuery isSilent)
    : loop_(loop),
      interval_(interval),
      call_(std::make_shared<Call>(Call{std::move(handler)})),
      isSilent_(std::move(isSilent)) {
    arm(batches(callsInSound));
}

BatchedWakeup::~BatchedWakeup() {
    call_->cancelled = true;
}

void BatchedWakeup::arm(Rhythm rhythm) {
    rhythm_ = rhythm;
    wakeup_ = loop_.every(rhythm.interval, [this, calls = rhythm.calls] { run(calls); });
}

void BatchedWakeup::run(int calls) {
    // A copy of the pointer, since the handler may destroy this object.
    const std::shared_ptr<Call> call = call_;
    running_ = true;
    for (int i = 0; i < calls && !call->cancelled; ++i) {
        call->handler();
    }
    if (call->cancelled) {
        return;
    }
    running_ = false;
    lastRun_ = loop_.now(); // drops the calls that became due during this run
    silentCalls_ = isSilent_() ? std::min(silentCalls_ + calls, callsBeforeSilence) : 0;
    const Rhythm next = batches(inSilence() ? callsInSilence : callsInSound);
    if (next != rhythm_) {
        arm(next);
    }
}

void BatchedWakeup::endSilence() {
    // While the handler runs, no new wake-up is started: it could call the handler a second time
    // before the first call has returned.
    if (running_ || !inSilence() || isSilent_()) {
        return;
    }
    silentCalls_ = 0;
    const auto due = (loop_.now() - lastRun_) / interval_;
    const int calls = static_cast<int>(std::min<EventLoop::Duration::rep>(due, callsInSilence - 1));
    arm(calls > 0 ? Rhythm{EventLoop::Duration(1), calls} : batches(1));
}

} // namespace sonarith
