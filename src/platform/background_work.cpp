// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/background_work.h"

#include <utility>

namespace sonarith {

BackgroundWork::BackgroundWork(std::function<void()> work, const ThreadStarter& starter) {
    Result<std::thread> started = starter(std::move(work));
    if (started.ok()) {
        thread_ = std::move(started.value());
    }
}

BackgroundWork::~BackgroundWork() {
    if (thread_.joinable()) {
        thread_.join();
    }
}

} // namespace sonarith
