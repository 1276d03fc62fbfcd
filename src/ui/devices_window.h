// SPDX-License-Identifier: GPL-3.0-or-later
// The Devices window: the drive or disc image, the sound output and the recording source in use,
// and problems with the disc. It accesses devices only through DeviceChoice.
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

/// Callbacks into the program, except for the devices.
struct DevicesWindowCalls {
    /// Whether an action is using the drive, which cannot be changed until the action ends.
    std::function<bool()> driveInUse;
    /// "Refresh List"; it may yield.
    std::function<void()> refreshList;
    /// The notices to the user so far, oldest first.
    std::function<std::vector<std::string>()> notices;
    /// Lets the user pick a disc image; returns an empty text if none was picked. Not set: the
    /// desktop's dialog.
    std::function<std::string(const std::string& current)> pickImage = {};
    /// The help key. Not set: it does nothing.
    std::function<void()> help = {};
};

class DevicesWindow : public QDialog {
  public:
    /// `devices` must outlive this object.
    DevicesWindow(DeviceChoice& devices, DevicesWindowCalls calls);

    /// Searches for devices again and shows the window.
    void open() override;
    /// Stores a drive (a device node or the path of an image) and refreshes. While the drive is in
    /// use, the window is shown with a message instead. Also used for images that are dropped on
    /// the main window.
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
    /// Updates the report: while the window is open, a disc may be read again and damage found.
    QTimer reportTimer_;
    /// Time since a drive was last chosen from the list.
    QElapsedTimer sinceChoice_;
    bool refused_ = false; ///< the last choice was refused because the drive was in use
    bool refreshing_ = false;
    bool refreshAgain_ = false;
};

} // namespace sonarith
