// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a Label without a text as a block of one colour that stands where the control says. What
// it stands on cuts it off: a bar that grows is a block that moves.
#pragma once

#include <QColor>
#include <QWidget>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"

namespace sonarith {

class BlockView : public QWidget {
  public:
    BlockView(Label& model, QString label, const QColor& color, QWidget* parent);

  private:
    ControlView view_;
};

} // namespace sonarith
