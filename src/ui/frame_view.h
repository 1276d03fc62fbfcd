// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a Frame as a border with the caption. The layout of the window places the contents of the
// frame.
#pragma once

#include <QGroupBox>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"

namespace sonarith {

class FrameView : public QGroupBox {
  public:
    FrameView(Frame& frame, QWidget* parent);

  private:
    ControlView view_;
};

} // namespace sonarith
