// SPDX-License-Identifier: GPL-3.0-or-later
// Handles the events of the preferences' window: shows the settings, and stores and applies each
// change. Its load step, which runs at each start of the program, also creates the destination
// folder. ui/preferences_layout.h has the widgets.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "forms/windows.h"
#include "platform/platform.h"
#include "platform/result.h"
#include "settings/preferences/destination_folder.h"
#include "settings/preferences/disk_guard.h"
#include "settings/process_state.h"

namespace sonarith {

class PreferencesWindow {
  public:
    /// Sets the handlers of the form's events. All parameters must outlive this object.
    PreferencesWindow(const Platform& platform, ProcessState& process, Windows& windows,
                      DiskGuard& guard);
    PreferencesWindow(const PreferencesWindow&) = delete;
    PreferencesWindow& operator=(const PreferencesWindow&) = delete;

    /// Ends early if a control does not accept its stored value; the window is loaded nevertheless.
    /// All settings that are saved before the first step that may yield reach the disk in one
    /// write.
    void Form_Load();
    /// Saves quality, bit rate and capture format, which are saved only here.
    void Form_QueryUnload();

    void Check1_Click();
    void Check2_Click();
    void Check4_Click();
    void Check10_Click();
    /// Saves the disk guard's two switches, then the texts of its two limits. A text that is not a
    /// number is saved, too. The second limit is saved only if the first limit is a 16-bit number.
    void Command1_Click();
    /// Creates the destination folder, saves its path and yields once. If Check2 is ticked, creates
    /// the folder that the user has entered, otherwise the stored folder. If Check2 is ticked and
    /// the name (Text10) is empty, only shows one message. If the folder cannot be created, saves
    /// no path and shows two messages.
    void Co111_Click();
    void Drive2_Change();
    void Dir2_Change();

  private:
    void wireSwitches();
    void wireOtherControls();
    void saveSetting(const char* key, const std::string& value);
    /// Saves a box's value and copies it to `field`.
    void saveSwitch(const CheckBox& box, const char* key, std::int16_t& field);
    /// Saves a box's text and copies it to `field` as a number. Fails, after saving, if the text is
    /// not a number or does not fit 16 bits.
    Status saveLimit(const TextBox& box, const char* key, std::int16_t& field);
    Status saveLimits();

    Status runLoadSteps();
    Status fillEncodingLists();
    Status showSettings();
    Status fillFormats();

    /// The folder that Co111_Click() creates. If Check2 is ticked and the user has entered no name,
    /// shows a message and returns nothing.
    [[nodiscard]] std::optional<DestinationFolder> chosenDestination();
    [[nodiscard]] bool makeFolders(const std::string& path);
    /// Ends the transaction of the load step: the settings that were saved in the transaction reach
    /// the disk in one write. Called at the end of the load step, and before anything that may
    /// yield: no transaction may exist across a yield.
    void endLoadWrites() { loadWrites_.reset(); }

    const Platform& platform_;
    ProcessState& process_;
    Windows& windows_;
    FrmPrefs& form_;
    DiskGuard& guard_;
    /// Has a value only during the load step, and never during a yield.
    std::optional<StoreTransaction> loadWrites_;
};

} // namespace sonarith
