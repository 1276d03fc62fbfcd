// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a CommandButton as a picture with a tool tip or as a text. A click by mouse or key clicks
// the control. A double click counts as one click, because a user who double-clicks intends one
// action.
#pragma once

#include <QPushButton>
#include <QToolButton>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"
#include "ui/icons.h"

namespace sonarith {

/// The tool tip is that of the control, or the caption if the control has no tool tip.
class IconButtonView : public QToolButton {
  public:
    IconButtonView(CommandButton& model, Symbol symbol, QWidget* parent);

  protected:
    void mouseDoubleClickEvent(QMouseEvent*) override {}

  private:
    ControlView view_;
};

class TextButtonView : public QPushButton {
  public:
    /// `takenLetters` (lower case) are the Alt letters that are already in use.
    TextButtonView(CommandButton& model, QString takenLetters, QWidget* parent);

  protected:
    void mouseDoubleClickEvent(QMouseEvent*) override {}

  private:
    ControlView view_;
};

} // namespace sonarith
