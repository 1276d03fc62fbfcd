// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a CommandButton, as a picture with a tool tip or as a text. A click, by mouse or key, is
// the control's click; a double click is one click, since a second one in the middle of what the
// first has started is nothing that a person means.
#pragma once

#include <QPushButton>
#include <QToolButton>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"
#include "ui/icons.h"

namespace sonarith {

/// The caption, or the control's own tool tip, is shown as tool tip.
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
    /// `takenLetters` (lower case) are those that Alt already gives to others.
    TextButtonView(CommandButton& model, QString takenLetters, QWidget* parent);

  protected:
    void mouseDoubleClickEvent(QMouseEvent*) override {}

  private:
    ControlView view_;
};

} // namespace sonarith
