// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/limited_pace.h"

#include <utility>

namespace sonarith {

namespace {

/// The time from the end of an interval until the timer runs show_. The delay is longer than the
/// time between two requests of the level meter (20 ms while there is sound). So the next request
/// usually runs show_, and the timer need not wake up the processor.
constexpr std::chrono::milliseconds tailDelay{30};

} // namespace

std::chrono::nanoseconds LimitedPace::monotonicNow() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

LimitedPace::LimitedPace(std::chrono::milliseconds interval, std::function<void()> show, Clock now)
    : length_(interval), show_(std::move(show)), now_(std::move(now)) {
    tail_.setSingleShot(true);
    tail_.callOnTimeout(&tail_, [this] { this->show(now_() / length_); });
}

void LimitedPace::request() {
    const std::chrono::nanoseconds now = now_();
    const auto interval = now / length_;
    if (interval != lastShown_) {
        show(interval);
    } else if (!tail_.isActive()) {
        const std::chrono::nanoseconds end = (interval + 1) * length_;
        tail_.start(std::chrono::ceil<std::chrono::milliseconds>(end - now) + tailDelay);
    }
}

void LimitedPace::show(std::chrono::nanoseconds::rep interval) {
    tail_.stop();
    lastShown_ = interval;
    show_();
}

} // namespace sonarith
