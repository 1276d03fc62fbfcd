// SPDX-License-Identifier: GPL-3.0-or-later
// Ties a Form to the window that shows it: seen or not, caption, place (from the primary screen's
// corner), inner size, and the close that the window manager asks for. The window's contents are
// its own.
#pragma once

#include <functional>

#include <QWidget>

#include "platform/controls/form.h"

namespace sonarith {

class FormAdapter : public QObject {
  public:
    /// `client` is the part of `window` whose size is the form's inner size: the window itself,
    /// or what stands below its menu bar. `beforeResize` runs before the form hears of a new
    /// size. Both widgets outlive the adapter's last event.
    FormAdapter(Form& form, QWidget& window, QWidget& client,
                std::function<void()> beforeResize = {});

    /// Tells the form the client's present size, as if it had just been resized to it.
    void reportSize();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void reflect();
    void followPlace();
    void bringBack();

    Form& form_;
    QWidget& window_;
    QWidget& client_;
    std::function<void()> beforeResize_;
    /// The place that window and form agreed on last. The window moves only where the form says
    /// another one; else it stands where the window manager and the user have put it.
    Twips agreedLeft_ = 0;
    Twips agreedTop_ = 0;
    bool following_ = false;
    Connection changed_;
    Connection shown_;
    Connection grasped_;
    Connection minimized_;
};

} // namespace sonarith
