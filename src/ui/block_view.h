// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a Label as a block of one colour, without its text, at the Label's own position. The parent
// clips the block, so that a moving block looks like a bar that grows or shrinks.
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
