// SPDX-License-Identifier: GPL-3.0-or-later
// The position of a menu that is requested while a press or a key is handled: at the press, or at
// the target of the key. It opens no menu; popup_menus.h does.
#pragma once

#include <optional>

#include <QPoint>

namespace sonarith {

/// While an object of this class exists, menus open at its position; with several objects, at that
/// of the newest. A view creates one around a handler of the logic.
class PopupPlace {
  public:
    /// `global` is a position on the screen.
    explicit PopupPlace(const QPoint& global);
    ~PopupPlace();
    PopupPlace(const PopupPlace&) = delete;
    PopupPlace& operator=(const PopupPlace&) = delete;

    /// The newest object's position; the position of the pointer if no object exists.
    [[nodiscard]] static QPoint current();

  private:
    std::optional<QPoint> outer_;
};

} // namespace sonarith
