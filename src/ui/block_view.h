// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a Label without a text as a block of one colour at the control's position, clipped by its
// parent: the block moves to make a bar grow.
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
