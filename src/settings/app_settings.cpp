// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/app_settings.h"

#include "platform/text/numbers.h"

namespace sonarith {

void LoadSettings(const SettingsStore& store, const std::string& programFolder,
                  AppSettings& settings) {
    const auto read = [&](const char* key, const std::string& fallback) {
        return store.GetSetting(applicationName, settingsSection, key, fallback);
    };
    // A broken value leaves its field at what it held, at the start of a run 0, and not at the
    // default: a store that was spoiled by hand is not to look like a fresh one.
    const auto number = [&](const char* key, const char* fallback, std::int16_t& field) {
        toInteger16(read(key, fallback)).storeIn(field);
    };
    number("Audio format", "1", settings.audioFormat);
    number("Encoding quality", "5", settings.encodingQuality);
    number("Encoding bitrate", "5", settings.encodingBitrate);
    number("HDWarning", "1", settings.hdWarning);
    number("HDWarningNo", "100", settings.hdWarningNo);
    number("HDstopdecoding", "1", settings.hdStopDecoding);
    number("HDStopNo", "50", settings.hdStopNo);
    // Taken as it stands: whether the folder exists is asked when it is made.
    settings.decodePath = read(decodePathKey, programFolder);
    number("desktop icon", "0", settings.desktopIcon);
    number("minimize onstart", "0", settings.minimizeOnStart);
    number("Delete WAV", "1", settings.deleteWav);
    number("show full path", "1", settings.showFullPath);
    number("encode after extracting", "1", settings.encodeAfterExtracting);
    number("mute button", "1", settings.muteButton);
}

} // namespace sonarith
