// SPDX-License-Identifier: GPL-3.0-or-later
// The Devices window. It shows the chosen drive or disc image, sound output and recording source,
// and lets the user choose others. It also shows problems with the disc and all notices. It
// accesses devices only through DeviceChoice.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTimer>

#include "platform/device_choice.h"

namespace sonarith {

/// The functions of the program that the window calls, except for those of the devices
/// (DeviceChoice).
struct DevicesWindowCalls {
    /// Whether an action is using the drive. Until the action ends, no drive can be chosen.
    std::function<bool()> driveInUse;
    /// Reads the chosen disc: runs "Refresh List". Then the player, if it is on, opens the disc.
    /// May yield.
    std::function<void()> readChosenDisc;
    /// The notices to the user so far, oldest first.
    std::function<std::vector<std::string>()> notices;
    /// Lets the user pick a disc image; returns an empty text if none was picked. If this is not
    /// set, the window opens a file dialog.
    std::function<std::string(const std::string& current)> pickImage = {};
    /// Runs when the user presses the help key. If this is not set, the key does nothing.
    std::function<void()> help = {};
};

class DevicesWindow : public QDialog {
  public:
    /// `devices` must outlive this object.
    DevicesWindow(DeviceChoice& devices, DevicesWindowCalls calls);

    /// Searches for the devices that exist now, and shows the window.
    void open() override;
    /// Stores a drive (as DeviceChoice::drive() returns it) and calls readChosenDisc. While an
    /// action is using the current drive, shows the window with a message instead. Also called for
    /// an image that is dropped on the main window.
    void chooseDrive(const std::string& drive);

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void buildLayout();
    void showChoices();
    void showDrives();
    void showReport();
    void choose(const QListWidgetItem& item);
    void pickImage();
    [[nodiscard]] std::string pickInDialog(const std::string& current);

    DeviceChoice& devices_;
    DevicesWindowCalls calls_;
    QListWidget* drives_;
    QPushButton* pickButton_;
    QComboBox* output_;
    QComboBox* source_;
    QPlainTextEdit* report_;
    /// Updates the report while the window is open: during that time, a disc may be read and damage
    /// may be found.
    QTimer reportTimer_;
    /// choose() restarts this clock whenever its call of chooseDrive() has returned.
    QElapsedTimer sinceChoice_;
    bool refused_ = false; ///< the last choice was refused because the drive was in use
    bool refreshing_ = false;
    bool refreshAgain_ = false;
};

} // namespace sonarith
