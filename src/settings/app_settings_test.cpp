// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/app_settings.h"

#include <gmock/gmock.h>

#include "support/fake_settings_store.h"

namespace sonarith {
namespace {

using test::FakeSettingsStore;
using ::testing::ElementsAre;

AppSettings loadedFrom(const FakeSettingsStore& store) {
    AppSettings settings;
    LoadSettings(store, "c:\\Sonarith", settings);
    return settings;
}

TEST(LoadSettings, SetsTheDefaultsIfTheStoreIsEmpty) {
    const AppSettings settings = loadedFrom(FakeSettingsStore());
    EXPECT_EQ(settings.audioFormat, 1);
    EXPECT_EQ(settings.encodingQuality, 5);
    EXPECT_EQ(settings.encodingBitrate, 5);
    EXPECT_EQ(settings.hdWarning, 1);
    EXPECT_EQ(settings.hdWarningNo, 100);
    EXPECT_EQ(settings.hdStopDecoding, 1);
    EXPECT_EQ(settings.hdStopNo, 50);
    EXPECT_EQ(settings.decodePath, "c:\\Sonarith");
    EXPECT_EQ(settings.desktopIcon, 0);
    EXPECT_EQ(settings.minimizeOnStart, 0);
    EXPECT_EQ(settings.deleteWav, 1);
    EXPECT_EQ(settings.showFullPath, 1);
    EXPECT_EQ(settings.encodeAfterExtracting, 1);
    EXPECT_EQ(settings.muteButton, 1);
}

TEST(LoadSettings, WritesNothingToTheStore) {
    FakeSettingsStore store;
    loadedFrom(store);
    EXPECT_EQ(store.size(), 0U);
}

TEST(LoadSettings, ReadsEachKeyOnceInTheFixedOrder) {
    FakeSettingsStore store;
    loadedFrom(store);
    EXPECT_THAT(store.readKeys,
                ElementsAre("Audio format", "Encoding quality", "Encoding bitrate", "HDWarning",
                            "HDWarningNo", "HDstopdecoding", "HDStopNo", "DecodePath",
                            "desktop icon", "minimize onstart", "Delete WAV", "show full path",
                            "encode after extracting", "mute button"));
}

TEST(LoadSettings, ReadsEachValueIntoItsOwnField) {
    FakeSettingsStore store;
    int value = 10;
    for (const char* key :
         {"Audio format", "Encoding quality", "Encoding bitrate", "HDWarning", "HDWarningNo",
          "HDstopdecoding", "HDStopNo", "desktop icon", "minimize onstart", "Delete WAV",
          "show full path", "encode after extracting", "mute button"}) {
        store.put("Settings", key, std::to_string(value++));
    }
    store.put("Settings", "DecodePath", "X:\\No\\Such");
    const AppSettings s = loadedFrom(store);
    EXPECT_THAT(
        (std::array{s.audioFormat, s.encodingQuality, s.encodingBitrate, s.hdWarning, s.hdWarningNo,
                    s.hdStopDecoding, s.hdStopNo, s.desktopIcon, s.minimizeOnStart, s.deleteWav,
                    s.showFullPath, s.encodeAfterExtracting, s.muteButton}),
        ElementsAre(10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22));
    EXPECT_EQ(s.decodePath, "X:\\No\\Such"); // unchanged, including its case
}

TEST(LoadSettings, LeavesAFieldUnchangedIfTheStoredValueIsNotANumber) {
    FakeSettingsStore store;
    store.put("Settings", "HDWarningNo", "1o0");
    store.put("Settings", "HDStopNo", "");
    EXPECT_EQ(loadedFrom(store).hdWarningNo, 0);
    EXPECT_EQ(loadedFrom(store).hdStopNo, 0);

    AppSettings running;
    running.hdWarningNo = 77;
    LoadSettings(store, "c:\\", running);
    EXPECT_EQ(running.hdWarningNo, 77);
}

TEST(LoadSettings, LeavesAFieldUnchangedIfTheStoredNumberDoesNotFitIn16Bits) {
    FakeSettingsStore store;
    store.put("Settings", "HDWarningNo", "70000");
    store.put("Settings", "HDStopNo", "-40000");
    EXPECT_EQ(loadedFrom(store).hdWarningNo, 0);
    EXPECT_EQ(loadedFrom(store).hdStopNo, 0);
}

TEST(LoadSettings, ContinuesAfterAnInvalidValue) {
    FakeSettingsStore store;
    store.put("Settings", "Audio format", "garbage");
    store.put("Settings", "mute button", "0");
    const AppSettings settings = loadedFrom(store);
    EXPECT_EQ(settings.audioFormat, 0);
    EXPECT_EQ(settings.muteButton, 0);
    EXPECT_EQ(settings.encodingQuality, 5);
}

} // namespace
} // namespace sonarith
