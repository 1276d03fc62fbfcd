// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a TextBox as a list of lines that can be read, selected and copied, but not edited. In
// the text of the box, a line ends with CR LF or LF.
#pragma once

#include <QPlainTextEdit>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"

namespace sonarith {

class TextLinesView : public QPlainTextEdit {
  public:
    TextLinesView(TextBox& box, QString label, QWidget* parent);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    void apply(Property which);
    void showText();

    TextBox& box_;
    ControlView view_;
};

} // namespace sonarith
