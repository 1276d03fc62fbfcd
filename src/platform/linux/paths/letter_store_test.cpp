// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/letter_store.h"

#include <gtest/gtest.h>

#include "platform/linux/paths/drive_table.h"
#include "support/fake_settings_store.h"

namespace sonarith {
namespace {

std::string stored(const SettingsStore& store, const std::string& key) {
    return store.GetSetting(applicationName, drivesSection, key, "none");
}

TEST(LetterStore, NewLettersReachTheStoreOnlyWhenTheFunctionWriteToIsCalled) {
    test::FakeSettingsStore store;
    store.SaveSetting(applicationName, drivesSection, "D", "/mnt/old");
    LetterStore letters(store);
    EXPECT_EQ(stored(letters, "D"), "/mnt/old");
    EXPECT_EQ(stored(letters, "E"), "none");
    EXPECT_EQ(assignLetter(letters, "/mnt/new"), 'E');
    EXPECT_EQ(stored(letters, "E"), "/mnt/new");
    EXPECT_EQ(stored(store, "E"), "none");
    letters.writeTo(store);
    EXPECT_EQ(stored(store, "E"), "/mnt/new");
    EXPECT_EQ(stored(store, "D"), "/mnt/old");
}

TEST(LetterStore, WritesEachLetterToTheStoreOnlyOnce) {
    test::FakeSettingsStore store;
    LetterStore letters(store);
    EXPECT_EQ(assignLetter(letters, "/mnt/new"), 'D');
    letters.writeTo(store);
    store.SaveSetting(applicationName, drivesSection, "D", "changed elsewhere");
    letters.writeTo(store);
    EXPECT_EQ(stored(store, "D"), "changed elsewhere");
}

} // namespace
} // namespace sonarith
