// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a DriveListBox as a drop-down list of the drives that there are when it opens. A drive that
// has gone in the meantime cannot be chosen: the box stays at the one before.
#pragma once

#include "platform/controls/folder_controls.h"
#include "ui/control_view.h"
#include "ui/drop_down.h"

namespace sonarith {

class DriveListView : public DropDown {
  public:
    DriveListView(DriveListBox& drives, QString label, QWidget* parent);

    /// Looks for drives anew.
    void showPopup() override;

  protected:
    /// Looks for drives anew: keys choose without opening the list.
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showDrives();

    DriveListBox& drives_;
    ControlView view_;
};

} // namespace sonarith
