// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the preferences' logic on the files, folders and settings store that a test passes,
// usually real ones; all other interfaces are fakes. For the same logic on fakes only, see
// tests/support/preferences_world.h.
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
    /// Loads the settings and then the preferences' form, as the start of the program does.
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
