// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a ProgressBar.
#pragma once

#include <QProgressBar>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"

namespace sonarith {

class ProgressView : public QProgressBar {
  public:
    ProgressView(ProgressBar& model, QString label, QWidget* parent);

  private:
    ControlView view_;
};

} // namespace sonarith
