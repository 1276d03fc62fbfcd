// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/external_input.h"

#include <utility>

namespace sonarith::sound {

ExternalInput::ExternalInput(std::string name, OpenCapture open, ReportDevice report,
                             CaptureTiming timing)
    : name_(std::move(name)), open_(std::move(open)), report_(std::move(report)), timing_(timing) {}

std::shared_ptr<CapturePump> ExternalInput::acquire() {
    const std::lock_guard lock(mutex_);
    std::shared_ptr<CapturePump> pump = running_.lock();
    if (!pump) {
        pump = std::make_shared<CapturePump>(open_, timing_, report_);
        running_ = pump;
    }
    return pump;
}

bool ExternalInput::isRunning(const SampleSource& source) {
    const std::lock_guard lock(mutex_);
    return running_.lock().get() == &source;
}

} // namespace sonarith::sound
