// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a CheckBox. A user's tick sets the control, which runs its click.
#pragma once

#include <QCheckBox>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"

namespace sonarith {

class CheckBoxView : public QCheckBox {
  public:
    /// `label` is shown beside the box while it has no caption of its own.
    CheckBoxView(CheckBox& box, const QString& label, QWidget* parent);

  private:
    ControlView view_;
};

} // namespace sonarith
