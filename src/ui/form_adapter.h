// SPDX-License-Identifier: GPL-3.0-or-later
// Ties a Form to the window that shows it: visible or not, enabled or not, caption, place (from the
// primary screen's corner), size, region, and the close that the window manager asks for. The
// window's contents are its own.
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

    /// The window's present size is the form's designed one. For a view whose contents decide it.
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

    Form& form_;
    QWidget& window_;
    QWidget& client_;
    std::function<void()> beforeResize_;
    /// The place that window and form agreed on last; none before the first. The window moves only
    /// where the form says another one; else it stands where the window manager and the user have
    /// put it.
    Twips agreedLeft_;
    Twips agreedTop_;
    /// The same of the size, the window's frame included.
    Twips agreedWidth_;
    Twips agreedHeight_;
    /// Form and window are told of what the desktop has done: nothing is to be done to the window.
    bool following_ = false;
    /// The size was set before the desktop had given the window its frame.
    bool frameIsToCome_ = false;
    Connection changed_;
    Connection shown_;
    Connection grasped_;
    Connection minimized_;
};

} // namespace sonarith
