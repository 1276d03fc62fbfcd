// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/device_notices.h"

#include <utility>

namespace sonarith::sound {

namespace {

/// The text that identifies a device's notices, for example "output hw:0".
std::string causeOf(SoundDevice kind, const std::string& name) {
    return (kind == SoundDevice::output ? "output " : "input ") + name;
}

/// The device as the subject of a sentence.
std::string subject(SoundDevice kind, const std::string& name) {
    const std::string word = kind == SoundDevice::output ? "sound output" : "sound input";
    return name == "default" ? "The default " + word : "The " + word + " \"" + name + "\"";
}

std::string lossOf(SoundDevice kind, const std::string& name) {
    return subject(kind, name) + " cannot be used: it is missing, in use or was unplugged. " +
           (kind == SoundDevice::output ? "Playing continues without sound"
                                        : "The input is silent") +
           " until it is available again.";
}

} // namespace

void DeviceNotices::mute() {
    const std::lock_guard lock(mutex_);
    notices_ = nullptr;
}

void DeviceNotices::report(SoundDevice kind, const std::string& name, DeviceState state) {
    const std::string cause = causeOf(kind, name);
    const std::lock_guard lock(mutex_);
    if (notices_ == nullptr) {
        return;
    }
    if (state == DeviceState::lost) {
        if (lost_.insert(cause).second) {
            notices_->report({lossOf(kind, name), cause});
        }
    } else if (lost_.erase(cause) > 0) {
        notices_->settled(cause, state == DeviceState::works
                                     ? subject(kind, name) + " is available again."
                                     : std::string());
    }
}

ReportDevice reportTo(std::shared_ptr<DeviceNotices> notices, SoundDevice kind, std::string name) {
    return [notices = std::move(notices), kind, name = std::move(name)](DeviceState state) {
        notices->report(kind, name, state);
    };
}

} // namespace sonarith::sound
