// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the preferences, the disk guard and the extraction, which the guard can stop. They are
// connected as in the program, on a machine of fakes in virtual time.
//
//     store.put("Settings", "HDWarning", "0");
//     start();                                     // loads the settings, then the preferences
//     form.Check6.setValue(1).passOver();          // as by the user's click
//     EXPECT_EQ(held("HDWarning"), "1");
#pragma once

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

#include "extraction/extraction.h"
#include "forms/windows.h"
#include "settings/preferences/preferences.h"
#include "support/fake_machine.h"
#include "worktree/add_file.h"

namespace sonarith::test {

struct PreferencesWorld : testing::Test, FakeMachine {
    ProcessState process;
    Windows windows{platform, process};
    sonarith::Form1& Form1 = windows.Form1;
    sonarith::Form4& Form4 = windows.Form4;
    FrmPrefs& form = windows.FrmPrefs;
    FileAdder adder{platform, process, Form1};
    Extraction extraction{platform, process, windows, adder};
    Preferences preferences{platform, process, windows, extraction.monitor};
    AppSettings& settings = process.settings;

    /// One entry for each click on one of the player's options, oldest first: "Option13" (mutes the
    /// disc's line) or "Option14" (unmutes it). Clicks by code count, too.
    std::vector<std::string> muted;

    PreferencesWorld() {
        Form1.load();
        Form4.load();
        Form4.Option13.onClick = [this] {
            muted.emplace_back("Option13");
        };
        Form4.Option14.onClick = [this] {
            muted.emplace_back("Option14");
        };
    }

    /// Loads the settings and the preferences, as the start of the program does.
    void start() {
        LoadSettings(store, files.programFolder(), settings);
        form.load();
    }
    /// Stores "0" (off) for each switch that is on by default, so that no switch is on. Then calls
    /// start(), and clears the log of the store's writes.
    void startWithAllOff() {
        for (const char* key : {hdWarningKey, hdStopDecodingKey, deleteWavKey, showFullPathKey,
                                encodeAfterExtractingKey, muteButtonKey}) {
            store.put(settingsSection, key, "0");
        }
        start();
        store.writes.clear();
        store.fileWrites = 0;
    }
    [[nodiscard]] std::optional<std::string> held(const std::string& key) const {
        return store.held(settingsSection, key);
    }
    /// The keys written and their values ("HDWarning=1"), oldest first.
    [[nodiscard]] std::vector<std::string> written() const {
        std::vector<std::string> all;
        for (const StoreWrite& write : store.writes) {
            all.push_back(write.key + "=" + write.value);
        }
        return all;
    }
};

} // namespace sonarith::test
