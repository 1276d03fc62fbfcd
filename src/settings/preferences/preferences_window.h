// SPDX-License-Identifier: GPL-3.0-or-later
// What the preferences' window does on its events: shows the settings, and stores and applies each
// change. Its load step also makes the destination folder; it runs at each start of the program.
// The widgets are elsewhere.
#pragma once

#include <cstdint>
#include <optional>

#include "forms/windows.h"
#include "platform/platform.h"
#include "platform/result.h"
#include "settings/preferences/destination_folder.h"
#include "settings/preferences/disk_guard.h"
#include "settings/process_state.h"

namespace sonarith {

class PreferencesWindow {
  public:
    /// Makes its procedures the handlers of the form's events. All outlive this.
    PreferencesWindow(const Platform& platform, ProcessState& process, Windows& windows,
                      DiskGuard& guard);
    PreferencesWindow(const PreferencesWindow&) = delete;
    PreferencesWindow& operator=(const PreferencesWindow&) = delete;

    /// Ends where a stored value does not fit its control; the window is loaded all the same. What
    /// it stores up to its yield is one write of the store.
    void Form_Load();
    /// Saves quality, bit rate and capture format, which reach the store at no other moment.
    void Form_QueryUnload();

    void Check1_Click();
    void Check2_Click();
    void Check4_Click();
    void Check10_Click();
    /// Saves all four keys of the disk guard, up to the first limit that is no number.
    void Command1_Click();
    /// Chooses and makes the destination folder. Yields once after saving it.
    void Co111_Click();
    void Drive2_Change();
    void Dir2_Change();

  private:
    void wireSwitches();
    void wireOtherControls();
    void saveSetting(const char* key, const std::string& value);
    /// Saves a box's value and copies it to its field.
    void saveSwitch(const CheckBox& box, const char* key, std::int16_t& field);
    /// Saves a box's text and copies it to its field as a number. Error, after the saving: a text
    /// that is no number or does not fit 16 bits.
    Status saveLimit(const TextBox& box, const char* key, std::int16_t& field);
    Status saveLimits();

    Status runLoadSteps();
    Status fillEncodingLists();
    Status showSettings();
    Status fillFormats();

    /// Nothing, after its message, if a new folder is to be made and has no name.
    [[nodiscard]] std::optional<DestinationFolder> chosenDestination();
    [[nodiscard]] bool makeFolders(const std::string& path);
    /// What the load step has saved so far reaches the disk: something that may yield comes next.
    void endLoadWrites() { loadWrites_.reset(); }

    const Platform& platform_;
    ProcessState& process_;
    Windows& windows_;
    FrmPrefs& form_;
    DiskGuard& guard_;
    /// Only while the load step runs, and never across a yield.
    std::optional<StoreTransaction> loadWrites_;
};

} // namespace sonarith
