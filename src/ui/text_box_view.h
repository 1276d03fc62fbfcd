// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a TextBox as one editable line. text_lines_view.h shows text boxes with several lines.
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
    void take(const QString& text);
    void showText();
    void showTypingLimit();

    TextBox& box_;
    ControlView view_;
};

/// Returns `font` with the size `points`, or with the size inherited from the parent widget if
/// `points` is 0.
[[nodiscard]] QFont withPoints(QFont font, int points);

} // namespace sonarith
