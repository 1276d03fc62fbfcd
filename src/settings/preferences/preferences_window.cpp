// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/preferences_window.h"

#include <functional>
#include <string>
#include <utility>

#include "platform/centred_form.h"
#include "platform/text/numbers.h"
#include "platform/text/unicode.h"
#include "settings/make_dirs.h"

namespace sonarith {

namespace {

constexpr const char* encodeCaption = "Encode to MP3 after extracting";
constexpr const char* doNotEncodeCaption = "Do not Encode after extracting";
constexpr const char* muteCaption = "Mute";
constexpr const char* playCaption = "Play";

template <std::size_t Count>
void fill(ComboBox& box, const char* const (&entries)[Count]) {
    box.clear();
    for (const char* entry : entries) {
        box.addItem(entry);
    }
}

/// Runs `before` before each message box. `before` must end an open StoreTransaction, because the
/// box yields and no transaction may exist across a yield.
class BoxesAfter final : public MessageBoxes {
  public:
    BoxesAfter(MessageBoxes& boxes, std::function<void()> before)
        : boxes_(boxes), before_(std::move(before)) {}
    BoxAnswer show(const std::string& text, BoxIcon icon, BoxButtons buttons,
                   const std::string& title) override {
        before_();
        return boxes_.show(text, icon, buttons, title);
    }

  private:
    MessageBoxes& boxes_;
    std::function<void()> before_;
};

} // namespace

PreferencesWindow::PreferencesWindow(const Platform& platform, ProcessState& process,
                                     Windows& windows, DiskGuard& guard)
    : platform_(platform),
      process_(process),
      windows_(windows),
      form_(windows.FrmPrefs),
      guard_(guard) {
    form_.onLoad = [this] {
        Form_Load();
    };
    form_.onQueryUnload = [this] {
        Form_QueryUnload();
    };
    wireSwitches();
    wireOtherControls();
}

void PreferencesWindow::wireSwitches() {
    const auto wire = [this](CheckBox& box, const char* key, std::int16_t AppSettings::*field) {
        box.onClick = [this, &box, key, field] {
            saveSwitch(box, key, process_.settings.*field);
        };
    };
    wire(form_.Check6, hdWarningKey, &AppSettings::hdWarning);
    wire(form_.Check7, hdStopDecodingKey, &AppSettings::hdStopDecoding);
    wire(form_.Check3, deleteWavKey, &AppSettings::deleteWav);
    wire(form_.Check5, minimizeOnStartKey, &AppSettings::minimizeOnStart);
    wire(form_.Check11, showFullPathKey, &AppSettings::showFullPath);
    form_.Check10.onClick = [this] {
        Check10_Click();
    };
    form_.Check4.onClick = [this] {
        Check4_Click();
    };
    form_.Check1.onClick = [this] {
        Check1_Click();
    };
    form_.Check2.onClick = [this] {
        Check2_Click();
    };
}

void PreferencesWindow::wireOtherControls() {
    const auto copyIndex = [this](ComboBox& box, std::int16_t AppSettings::*field) {
        box.onClick = [this, &box, field] {
            process_.settings.*field = static_cast<std::int16_t>(box.listIndex());
        };
    };
    copyIndex(form_.Combo1, &AppSettings::encodingQuality);
    copyIndex(form_.Combo2, &AppSettings::encodingBitrate);
    copyIndex(form_.cbxFormat, &AppSettings::audioFormat);
    // Deliberate: these handlers run before the key changes the text. So the saved text lacks the
    // last key's change until a click on Command1 saves the text.
    form_.Text7.onKeyDown = [this] {
        saveLimit(form_.Text7, hdWarningNoKey, process_.settings.hdWarningNo).passOver();
    };
    form_.Text8.onKeyDown = [this] {
        saveLimit(form_.Text8, hdStopNoKey, process_.settings.hdStopNo).passOver();
    };
    form_.Command1.onClick = [this] {
        Command1_Click();
    };
    form_.Command3.onClick = [this] {
        guard_.RefreshDriveSpace();
    };
    form_.Co111.onClick = [this] {
        Co111_Click();
    };
    form_.Drive2.onChange = [this] {
        Drive2_Change();
    };
    form_.Dir2.onChange = [this] {
        Dir2_Change();
    };
}

// --- load and unload -----------------------------------------------------------------------------

void PreferencesWindow::Form_Load() {
    loadWrites_.emplace(platform_.store);
    runLoadSteps().passOver();
    endLoadWrites();
}

Status PreferencesWindow::runLoadSteps() {
    centreOnScreen(form_, platform_.shell);
    if (Status status = fillEncodingLists(); !status.ok()) {
        return status;
    }
    if (Status status = showSettings(); !status.ok()) {
        return status;
    }
    if (Status status = fillFormats(); !status.ok()) {
        return status;
    }
    form_.Command3.click();
    Co111_Click();
    return {};
}

Status PreferencesWindow::fillEncodingLists() {
    fill(form_.Combo1, {"Low", "Normal", "High", "Voice", "Radio", "Tape", "HIFI", "CD", "Studio"});
    fill(form_.Combo2, {"32", "40", "48", "56", "64", "80", "96", "112", "128", "160", "192", "224",
                        "256", "320"});
    if (Status status = form_.Combo1.setListIndex(process_.settings.encodingQuality);
        !status.ok()) {
        return status;
    }
    return form_.Combo2.setListIndex(process_.settings.encodingBitrate);
}

/// A check box that becomes ticked runs its click handler, which saves the setting of the box. So
/// each load of the window saves the settings of all boxes that it ticks, although these settings
/// have not changed.
Status PreferencesWindow::showSettings() {
    const AppSettings& settings = process_.settings;
    if (Status status = form_.Check6.setValue(settings.hdWarning); !status.ok()) {
        return status;
    }
    form_.Text7.setText(std::to_string(settings.hdWarningNo));
    if (Status status = form_.Check7.setValue(settings.hdStopDecoding); !status.ok()) {
        return status;
    }
    form_.Text8.setText(std::to_string(settings.hdStopNo));
    form_.Text9.setText(settings.decodePath);
    const std::pair<CheckBox*, std::int16_t> others[] = {
        {&form_.Check4, settings.desktopIcon},
        {&form_.Check5, settings.minimizeOnStart},
        {&form_.Check3, settings.deleteWav},
        {&form_.Check11, settings.showFullPath},
        {&form_.Check10, settings.encodeAfterExtracting},
        {&form_.Check1, settings.muteButton}};
    for (const auto& [box, value] : others) {
        if (Status status = box->setValue(value); !status.ok()) {
            return status;
        }
    }
    return {};
}

Status PreferencesWindow::fillFormats() {
    fill(form_.cbxFormat, {"44.100Hz, 16bit Mono, 86k/sec", "44.100Hz, 16bit Stereo, 172k/sec"});
    return form_.cbxFormat.setListIndex(process_.settings.audioFormat);
}

void PreferencesWindow::Form_QueryUnload() {
    const StoreTransaction oneWrite(platform_.store);
    const AppSettings& settings = process_.settings;
    saveSetting(encodingQualityKey, std::to_string(settings.encodingQuality));
    saveSetting(encodingBitrateKey, std::to_string(settings.encodingBitrate));
    saveSetting(audioFormatKey, std::to_string(settings.audioFormat));
}

// --- switches and limits -------------------------------------------------------------------------

void PreferencesWindow::saveSetting(const char* key, const std::string& value) {
    platform_.store.SaveSetting(applicationName, settingsSection, key, value);
}

void PreferencesWindow::saveSwitch(const CheckBox& box, const char* key, std::int16_t& field) {
    saveSetting(key, std::to_string(box.value()));
    field = static_cast<std::int16_t>(box.value());
}

Status PreferencesWindow::saveLimit(const TextBox& box, const char* key, std::int16_t& field) {
    saveSetting(key, box.text());
    const Result<std::int16_t> limit = toInteger16(box.text());
    if (!limit.ok()) {
        return limit.error();
    }
    field = limit.value();
    return {};
}

void PreferencesWindow::Check10_Click() {
    const bool ticked = form_.Check10.value() == 1;
    form_.Check10.setCaption(ticked ? encodeCaption : doNotEncodeCaption);
    saveSwitch(form_.Check10, encodeAfterExtractingKey, process_.settings.encodeAfterExtracting);
}

void PreferencesWindow::Check4_Click() {
    saveSwitch(form_.Check4, desktopIconKey, process_.settings.desktopIcon);
    // Only this window is hidden and shown; the main window is not affected.
    if (form_.Check4.value() == 1) {
        windows_.frmpopup.load();
        form_.hide();
    } else {
        windows_.frmpopup.unload();
        form_.show();
    }
}

void PreferencesWindow::Check1_Click() {
    if (!windows_.Form4.loaded()) {
        endLoadWrites(); // the player's load step may show a message box
    }
    Form4& player = touched(windows_.Form4);
    const bool ticked = form_.Check1.value() == 1;
    OptionButton& option = ticked ? player.Option13 : player.Option14;
    option.setSelected(true);
    option.click();
    form_.Check1.setCaption(ticked ? muteCaption : playCaption);
    process_.settings.muteButton = ticked ? 1 : 0;
    saveSetting(muteButtonKey, std::to_string(form_.Check1.value()));
}

void PreferencesWindow::Command1_Click() {
    const StoreTransaction oneWrite(platform_.store);
    saveSwitch(form_.Check6, hdWarningKey, process_.settings.hdWarning);
    saveSwitch(form_.Check7, hdStopDecodingKey, process_.settings.hdStopDecoding);
    saveLimits().passOver();
}

Status PreferencesWindow::saveLimits() {
    if (Status status = saveLimit(form_.Text7, hdWarningNoKey, process_.settings.hdWarningNo);
        !status.ok()) {
        return status;
    }
    return saveLimit(form_.Text8, hdStopNoKey, process_.settings.hdStopNo);
}

// --- the destination folder ----------------------------------------------------------------------

void PreferencesWindow::Check2_Click() {
    form_.Picture6.setVisible(form_.Check2.value() == 1);
}

void PreferencesWindow::Drive2_Change() {
    form_.Dir2.setPath(form_.Drive2.drive()).passOver();
}

void PreferencesWindow::Dir2_Change() {
    form_.Text9.setText(form_.Dir2.path());
    // Deliberate: only the stored setting changes here; process_.settings.decodePath keeps its
    // value until Co111_Click runs. Nothing checks whether the new folder is writable.
    saveSetting(decodePathKey, form_.Text9.text());
}

std::optional<DestinationFolder> PreferencesWindow::chosenDestination() {
    if (form_.Check2.value() == 0) {
        // The default here is empty: without a stored value, destinationOf() returns "WAVFiles" in
        // the program folder. So the first start of the program creates "WAVFiles". LoadSettings
        // uses another default: the program folder itself.
        const std::string stored =
            platform_.store.GetSetting(applicationName, settingsSection, decodePathKey, "");
        return destinationOf(stored, platform_.files.programFolder());
    }
    DestinationFolder destination{form_.Text9.text(), form_.Text10.text()};
    if (destination.parent.ends_with('\\')) {
        destination.parent.pop_back();
    }
    if (destination.name.empty()) {
        platform_.boxes.show("Enter a name for the Destination directory");
        return std::nullopt;
    }
    return destination;
}

bool PreferencesWindow::makeFolders(const std::string& path) {
    BoxesAfter boxes(platform_.boxes, [this] { endLoadWrites(); });
    return MakeDirs(path, platform_.files, boxes, platform_.pointer);
}

void PreferencesWindow::Co111_Click() {
    const auto destination = chosenDestination();
    if (!destination) {
        return;
    }
    const int load = form_.timesLoaded();
    const std::string path = destination->path();
    form_.Text9.setText(path);
    process_.settings.decodePath = lowerCase(path);
    form_.Text10.setText(destination->name);
    if (makeFolders(path)) {
        saveSetting(decodePathKey, path);
        endLoadWrites();
        platform_.loop.yield();
    } else {
        platform_.boxes.show("Error in creating the path " + path +
                             "  Create a new Destination path using the selection controls");
    }
    // If the window was closed during the yield or message, it stays closed; if it was reopened,
    // its new state is kept.
    if (form_.loaded() && form_.timesLoaded() == load) {
        form_.Picture6.setVisible(false);
        form_.Check2.setValue(0).passOver();
    }
}

} // namespace sonarith
