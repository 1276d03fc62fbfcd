// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/chosen_devices.h"

namespace sonarith {

namespace {
constexpr const char* driveKey = "Drive";
constexpr const char* outputKey = "Output";
constexpr const char* sourceKey = "Source";
} // namespace

std::string ChosenDevices::drive() const {
    return read(driveKey, "");
}

std::string ChosenDevices::output() const {
    return read(outputKey, "default"); // ALSA's name for the output that the desktop has chosen
}

std::string ChosenDevices::source() const {
    return read(sourceKey, "");
}

void ChosenDevices::setDrive(const std::string& drive) {
    write(driveKey, drive);
}

void ChosenDevices::setOutput(const std::string& output) {
    write(outputKey, output);
}

void ChosenDevices::setSource(const std::string& source) {
    write(sourceKey, source);
}

std::string ChosenDevices::read(const std::string& key, const std::string& fallback) const {
    return store_.GetSetting(applicationName, section, key, fallback);
}

void ChosenDevices::write(const std::string& key, const std::string& value) {
    store_.SaveSetting(applicationName, section, key, value);
}

} // namespace sonarith
