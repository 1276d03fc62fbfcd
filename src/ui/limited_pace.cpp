// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/limited_pace.h"

#include <utility>

namespace sonarith {

LimitedPace::LimitedPace(std::chrono::milliseconds interval, std::function<void()> show)
    : show_(std::move(show)) {
    pause_.setSingleShot(true);
    pause_.setInterval(interval);
    QObject::connect(&pause_, &QTimer::timeout, &pause_, [this] {
        if (std::exchange(requested_, false)) {
            request();
        }
    });
}

void LimitedPace::request() {
    if (pause_.isActive()) {
        requested_ = true;
        return;
    }
    pause_.start();
    show_();
}

} // namespace sonarith
