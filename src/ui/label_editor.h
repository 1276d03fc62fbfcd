// SPDX-License-Identifier: GPL-3.0-or-later
// The line edit in which the user edits the label of a tree node. It only reports how the edit
// ended; the tree handles the new text.
#pragma once

#include <functional>

#include <QLineEdit>

namespace sonarith {

class LabelEditor : public QLineEdit {
  public:
    LabelEditor(const QString& text, QWidget* parent);

    /// One of these two functions is called, once, when the edit ends. The return key finishes the
    /// edit, and so does a move of the focus within the window by mouse or tab key. A menu that
    /// takes the focus does not end the edit. The escape key cancels the edit, and so does any
    /// other loss of the focus (to another window or a message box, or because the editor is
    /// hidden): a finished edit renames a file, and such a loss may be an accident.
    std::function<void(const QString& text)> onFinished;
    std::function<void()> onCancelled;
    /// Called for each press of a mouse button. If it returns true, the editor does not handle the
    /// press.
    std::function<bool(QMouseEvent&)> handlesPress;

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
