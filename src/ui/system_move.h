// SPDX-License-Identifier: GPL-3.0-or-later
// Moves a window with the pointer, as if the user dragged its caption. The desktop moves
// the window; this class only starts the move, once for each press of the left button.
#pragma once

#include <functional>

#include <QWidget>
#include <QWindow>

namespace sonarith {

class SystemMove : public QObject {
  public:
    /// Requests a move from the desktop. Returns false if the desktop cannot move windows.
    using Start = std::function<bool(QWindow&)>;

    /// `window` must outlive this object. Only tests pass another `start`.
    explicit SystemMove(QWidget& window, Start start = &QWindow::startSystemMove);

    /// Starts a move. Called while the left button is down. Does nothing for a window that was
    /// never shown. After a move was started, further calls do nothing until the left button is
    /// released or pressed again.
    void start();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget& window_;
    Start start_;
    /// A move was started since the last press or release of the left button.
    bool started_ = false;
};

} // namespace sonarith
