// SPDX-License-Identifier: GPL-3.0-or-later
// Stores where a menu opens if it is requested while a press or a key is handled: at the position
// of the press, or of the item to which the key applies. popup_menus.h opens the menu.
#pragma once

#include <optional>

#include <QPoint>

namespace sonarith {

/// While an object of this class exists, menus open at its position. If several objects exist,
/// menus open at the position of the newest. A view keeps such an object while it runs onMouseDown
/// or the handler of the menu key.
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
