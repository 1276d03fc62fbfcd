// SPDX-License-Identifier: GPL-3.0-or-later
// Moves a window with the pointer, as if the user dragged its caption. The desktop does the
// moving; this class only starts it, once for each press of the left button.
#pragma once

#include <functional>

#include <QWidget>
#include <QWindow>

namespace sonarith {

class SystemMove : public QObject {
  public:
    /// Requests a move from the desktop; false if the desktop cannot do it.
    using Start = std::function<bool(QWindow&)>;

    /// `window` must outlive this object. Tests replace `start`.
    explicit SystemMove(QWidget& window, Start start = &QWindow::startSystemMove);

    /// Called while the left button is pressed. Does nothing for a window that was never shown, and
    /// until the left button was released or pressed again after the last start.
    void start();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget& window_;
    Start start_;
    /// A move was started by the present press.
    bool started_ = false;
};

} // namespace sonarith
