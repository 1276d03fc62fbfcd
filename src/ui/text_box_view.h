// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a TextBox as one line that can be typed into. Boxes of several lines are in
// text_lines_view.h.
#pragma once

#include <QLineEdit>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"

namespace sonarith {

class TextBoxView : public QLineEdit {
  public:
    TextBoxView(TextBox& box, QString label, QWidget* parent);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    void apply(Property which);
    void showText();
    void showTypingLimit();

    TextBox& box_;
    ControlView view_;
};

/// `font` in `points`, or in the size that it inherits for 0.
[[nodiscard]] QFont withPoints(QFont font, int points);

} // namespace sonarith
