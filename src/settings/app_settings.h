// SPDX-License-Identifier: GPL-3.0-or-later
// Holds the run-time copy of the store's section "Settings", and loads it when the program starts.
// After the start, the logic reads this record instead of that section. Then only the preferences
// access the section: they write to it, and they read the destination folder's key from it.
#pragma once

#include <cstdint>
#include <string>

#include "platform/settings_store.h"

namespace sonarith {

/// The section that contains the fields of AppSettings.
inline constexpr const char* settingsSection = "Settings";

// The keys of that section.
inline constexpr const char* audioFormatKey = "Audio format";
inline constexpr const char* encodingQualityKey = "Encoding quality";
inline constexpr const char* encodingBitrateKey = "Encoding bitrate";
inline constexpr const char* hdWarningKey = "HDWarning";
inline constexpr const char* hdWarningNoKey = "HDWarningNo";
inline constexpr const char* hdStopDecodingKey = "HDstopdecoding";
inline constexpr const char* hdStopNoKey = "HDStopNo";
inline constexpr const char* decodePathKey = "DecodePath";
inline constexpr const char* desktopIconKey = "desktop icon";
inline constexpr const char* minimizeOnStartKey = "minimize onstart";
inline constexpr const char* deleteWavKey = "Delete WAV";
inline constexpr const char* showFullPathKey = "show full path";
inline constexpr const char* encodeAfterExtractingKey = "encode after extracting";
inline constexpr const char* muteButtonKey = "mute button";

/// Before LoadSettings() all numbers are 0. A switch should be 0 (off) or 1 (on), but
/// LoadSettings() accepts any 16-bit number.
struct AppSettings {
    std::int16_t audioFormat = 0;     ///< index in the capture formats: 0 mono, 1 stereo
    std::int16_t encodingQuality = 0; ///< no effect; the preferences only show and store it
    std::int16_t encodingBitrate = 0; ///< no effect; the preferences only show and store it
    std::int16_t hdWarning = 0;
    std::int16_t hdWarningNo = 0; ///< limit of free space, MB of 1,000,000 bytes
    std::int16_t hdStopDecoding = 0;
    std::int16_t hdStopNo = 0; ///< limit of free space, MB of 1,000,000 bytes
    std::string decodePath;    ///< destination folder, no trailing backslash
    std::int16_t desktopIcon = 0;
    std::int16_t minimizeOnStart = 0;
    std::int16_t deleteWav = 0; ///< no effect; the preferences only show and store it
    std::int16_t showFullPath = 0;
    std::int16_t encodeAfterExtracting = 0; ///< no effect; the preferences only show and store it
    std::int16_t muteButton = 0;
};

/// Fills `settings` from `store`, key by key, with `programFolder` as the default destination.
/// Never writes. A value that is not a number or does not fit 16 bits leaves its field unchanged.
void LoadSettings(const SettingsStore& store, const std::string& programFolder,
                  AppSettings& settings);

} // namespace sonarith
