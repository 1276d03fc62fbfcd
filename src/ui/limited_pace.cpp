// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/limited_pace.h"

#include <utility>

namespace sonarith {

LimitedPace::LimitedPace(std::chrono::milliseconds interval, First first,
                         std::function<void()> show)
    : first_(first), show_(std::move(show)) {
    interval_.setSingleShot(true);
    interval_.setInterval(interval);
    QObject::connect(&interval_, &QTimer::timeout, &interval_, [this] {
        if (std::exchange(requested_, false)) {
            this->show();
        }
    });
}

void LimitedPace::request() {
    if (interval_.isActive()) {
        requested_ = true;
    } else if (first_ == First::delayed) {
        requested_ = true;
        interval_.start();
    } else {
        show();
    }
}

void LimitedPace::show() {
    if (first_ == First::atOnce) {
        interval_.start();
    }
    show_();
}

} // namespace sonarith
