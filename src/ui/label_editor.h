// SPDX-License-Identifier: GPL-3.0-or-later
// The line of text that opens over a node's label. It only says how it was left; what the text
// does then is the tree's affair.
#pragma once

#include <functional>

#include <QLineEdit>

namespace sonarith {

class LabelEditor : public QLineEdit {
  public:
    LabelEditor(const QString& text, QWidget* parent);

    /// How it ended; called once. Return, and a move of the focus to another part of the window
    /// by mouse or tab key, finish the edit. Escape cancels it, and so does whatever else takes
    /// the focus (another window, a message box, hiding): a file is not renamed by accident.
    std::function<void(const QString& text)> onFinished;
    std::function<void()> onCancelled;
    /// Asked for each press: true takes it away from the editor.
    std::function<bool(QMouseEvent&)> takesPress;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;

  private:
    void finish();
    void cancel();

    bool left_ = false;
};

} // namespace sonarith
