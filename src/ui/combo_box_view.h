// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a ComboBox. A choice of the entry that is already selected also runs the click handler.
#pragma once

#include "platform/controls/combo_box.h"
#include "ui/control_view.h"
#include "ui/drop_down.h"

namespace sonarith {

class ComboBoxView : public DropDown {
  public:
    ComboBoxView(ComboBox& box, QString label, QWidget* parent);

  private:
    void showEntries();

    ComboBox& box_;
    ControlView view_;
};

} // namespace sonarith
