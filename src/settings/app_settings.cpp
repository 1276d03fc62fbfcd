// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/app_settings.h"

#include "platform/text/numbers.h"

namespace sonarith {

void LoadSettings(const SettingsStore& store, const std::string& programFolder,
                  AppSettings& settings) {
    const auto read = [&](const char* key, const std::string& fallback) {
        return store.GetSetting(applicationName, settingsSection, key, fallback);
    };
    // If a stored value is invalid, the field is not changed (it is 0 when the program starts) and
    // does not get the default: a store in which the user has made a mistake must not look like a
    // new store.
    const auto number = [&](const char* key, const char* fallback, std::int16_t& field) {
        toInteger16(read(key, fallback)).storeIn(field);
    };
    number(audioFormatKey, "1", settings.audioFormat);
    number(encodingQualityKey, "5", settings.encodingQuality);
    number(encodingBitrateKey, "5", settings.encodingBitrate);
    number(hdWarningKey, "1", settings.hdWarning);
    number(hdWarningNoKey, "100", settings.hdWarningNo);
    number(hdStopDecodingKey, "1", settings.hdStopDecoding);
    number(hdStopNoKey, "50", settings.hdStopNo);
    // The folder may be missing at this point: the preferences create it later.
    settings.decodePath = read(decodePathKey, programFolder);
    number(desktopIconKey, "0", settings.desktopIcon);
    number(minimizeOnStartKey, "0", settings.minimizeOnStart);
    number(deleteWavKey, "1", settings.deleteWav);
    number(showFullPathKey, "1", settings.showFullPath);
    number(encodeAfterExtractingKey, "1", settings.encodeAfterExtracting);
    number(muteButtonKey, "1", settings.muteButton);
}

} // namespace sonarith
