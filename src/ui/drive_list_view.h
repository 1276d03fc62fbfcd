// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a DriveListBox as a drop-down list. The list contains the drives that exist when it opens.
// If the chosen drive is removed from the computer, the list still contains it. If another drive is
// removed while the list is open, that drive cannot be chosen: the box keeps the previous drive.
#pragma once

#include "platform/controls/folder_controls.h"
#include "ui/control_view.h"
#include "ui/drop_down.h"

namespace sonarith {

class DriveListView : public DropDown {
  public:
    DriveListView(DriveListBox& drives, QString label, QWidget* parent);

    /// Lists the drives again.
    void showPopup() override;

  protected:
    /// Lists the drives again, because a key can choose a drive while the list is closed.
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showDrives();

    DriveListBox& drives_;
    ControlView view_;
};

} // namespace sonarith
