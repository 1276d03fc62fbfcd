// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a CheckBox. A click by the user sets the value of the control; the control then
// runs its click handler.
#pragma once

#include <QCheckBox>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"

namespace sonarith {

class CheckBoxView : public QCheckBox {
  public:
    /// `label` is shown beside the box while the control has no caption.
    CheckBoxView(CheckBox& box, const QString& label, QWidget* parent);

  private:
    ControlView view_;
};

} // namespace sonarith
