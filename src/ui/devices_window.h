// SPDX-License-Identifier: GPL-3.0-or-later
// The Devices window: which drive or disc image, which sound output and which recording source are
// used, and what is wrong with the disc. It knows no device but through DeviceChoice.
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

/// What the window asks of the program beside the devices.
struct DevicesWindowCalls {
    /// Whether an action is using the drive: it cannot be changed until that has ended.
    std::function<bool()> driveInUse;
    /// "Refresh List"; it may yield.
    std::function<void()> refreshList;
    /// The notices to the user so far, oldest first.
    std::function<std::vector<std::string>()> notices;
    /// Lets the user pick a disc image; empty if none was picked. Not set: the desktop's dialog.
    std::function<std::string(const std::string& current)> pickImage = {};
};

class DevicesWindow : public QDialog {
  public:
    /// `devices` outlives this.
    DevicesWindow(DeviceChoice& devices, DevicesWindowCalls calls);

    /// Looks for devices anew, and shows the window.
    void open() override;
    /// Stores a drive, a device node or the path of an image, and refreshes. While the drive is in
    /// use it only says so, and shows itself for that. For images that are dropped on the main
    /// window, too.
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
    /// A disc is read again, and damage is found, while the window stands open.
    QTimer reportTimer_;
    /// Since a drive was last chosen from the list.
    QElapsedTimer sinceChoice_;
    bool refused_ = false; ///< the last choice was, since the drive was in use
    bool refreshing_ = false;
    bool refreshAgain_ = false;
};

} // namespace sonarith
