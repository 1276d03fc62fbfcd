// SPDX-License-Identifier: GPL-3.0-or-later
// Connects a Form to the window that shows it: visibility, enabled state, caption, position
// (relative to the primary screen's upper left corner), size, region, and close requests of the
// window manager. Other classes create the contents of the window.
#pragma once

#include <functional>

#include <QWidget>

#include "platform/controls/form.h"
#include "ui/system_move.h"

namespace sonarith {

class FormAdapter : public QObject {
  public:
    /// `client` is the part of `window` whose size is the form's inner size: the window itself, or
    /// the part below its menu bar. `beforeResize` runs before the form is notified of a new size.
    /// `window` and `client` must outlive the adapter.
    FormAdapter(Form& form, QWidget& window, QWidget& client,
                std::function<void()> beforeResize = {});

    /// Sets the form's designed size to the window's present size plus the frame that the window
    /// will have. Called for a window whose contents determine its size. May wait for the window
    /// manager.
    void designSize();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void apply(Property which);
    void showCaption();
    void showPlace();
    void showSize();
    void showRegion();
    void followPlace();
    void followSize();
    void bringBack();
    void reportSize();
    void takeFrame();
    [[nodiscard]] QSize frameSize() const;

    Form& form_;
    QWidget& window_;
    QWidget& client_;
    std::function<void()> beforeResize_;
    /// The last position that was the same in the window and the form; 0 at first. The window is
    /// moved only when the form sets another position. Otherwise it stays where the window manager
    /// or the user has put it.
    Twips commonLeft_;
    Twips commonTop_;
    /// The last size, including the window's frame, that was the same in the window and the form.
    Twips commonWidth_;
    Twips commonHeight_;
    /// The form is being set to the window's position or size, so its changes must not move or
    /// resize the window.
    bool following_ = false;
    /// The size of the window's frame, as the window manager announced it before it added the
    /// frame; 0 by 0 if no size was announced.
    QSize expectedFrame_{0, 0};
    /// The window got the form's size before the size of the window's frame was known.
    bool frameIsPending_ = false;
    Connection changed_;
    Connection shown_;
    SystemMove move_;
    Connection grasped_;
    Connection minimized_;
};

} // namespace sonarith
