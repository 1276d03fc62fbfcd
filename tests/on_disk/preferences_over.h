// SPDX-License-Identifier: GPL-3.0-or-later
// The preferences' logic with real files, folders and a real settings store; everything else is
// fake. For tests; tests/support/preferences_world.h uses files in memory.
#pragma once

#include "extraction/extraction.h"
#include "forms/windows.h"
#include "settings/preferences/preferences.h"
#include "support/fake_machine.h"
#include "worktree/add_file.h"

namespace sonarith::test {

struct PreferencesOver {
    /// All parameters must outlive this object.
    PreferencesOver(FileSystem& files, Directories& directories, SettingsStore& store)
        : platform(machine.platformWith(
              {.store = &store, .files = &files, .directories = &directories})) {
        windows.Form1.load();
        windows.Form4.load();
    }
    /// The steps of a program start that load the settings and the preferences.
    void start() {
        LoadSettings(platform.store, platform.files.programFolder(), process.settings);
        form.load();
    }

    test::FakeMachine machine;
    Platform platform;
    ProcessState process;
    Windows windows{platform, process};
    FrmPrefs& form = windows.FrmPrefs;
    FileAdder adder{platform, process, windows.Form1};
    Extraction extraction{platform, process, windows, adder};
    Preferences preferences{platform, process, windows, extraction.monitor};
};

} // namespace sonarith::test
