// SPDX-License-Identifier: GPL-3.0-or-later
// The line edit over a node's label. It only reports how it ended; the tree handles the text.
#pragma once

#include <functional>

#include <QLineEdit>

namespace sonarith {

class LabelEditor : public QLineEdit {
  public:
    LabelEditor(const QString& text, QWidget* parent);

    /// How the edit ended; called once. Return, and a move of the focus within the window by mouse
    /// or tab key, finish the edit. Escape cancels it, as does any other loss of the focus (another
    /// window, a message box, hiding), so that no file is renamed by accident.
    std::function<void(const QString& text)> onFinished;
    std::function<void()> onCancelled;
    /// Called for each press. If it returns true, the editor ignores the press.
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
