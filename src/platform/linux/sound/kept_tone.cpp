// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/kept_tone.h"

#include <charconv>
#include <string>

#include "platform/chosen_devices.h"

namespace sonarith::sound {

namespace {

constexpr const char* bassKey = "Bass";
constexpr const char* trebleKey = "Treble";

int storedPosition(const SettingsStore& store, const char* key) {
    const std::string text = store.GetSetting(applicationName, ChosenDevices::section, key, "");
    int position = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, position);
    const bool valid =
        error == std::errc{} && stop == end && position >= 0 && position <= ToneControl::highest;
    return valid ? position : ToneControl::middle;
}

void keepPosition(SettingsStore& store, const char* key, int position) {
    if (storedPosition(store, key) != position) {
        store.SaveSetting(applicationName, ChosenDevices::section, key, std::to_string(position));
    }
}

} // namespace

KeptTone::KeptTone(ToneControl& tone, SettingsStore& store, EventLoop& loop)
    : tone_(tone), store_(store), loop_(loop) {
    tone_.setBass(storedPosition(store_, bassKey));
    tone_.setTreble(storedPosition(store_, trebleKey));
}

void KeptTone::changed() {
    rest_ = loop_.every(restTime, [this] { keep(); });
}

void KeptTone::keep() {
    if (!rest_) {
        return;
    }
    rest_ = nullptr;
    const StoreTransaction together(store_);
    keepPosition(store_, bassKey, tone_.bass());
    keepPosition(store_, trebleKey, tone_.treble());
}

} // namespace sonarith::sound
