// SPDX-License-Identifier: GPL-3.0-or-later
// Where a menu opens that is asked for while a press or a key is handled: at the press, or at what
// the key was meant for. It opens no menu; that is popup_menus.h.
#pragma once

#include <optional>

#include <QPoint>

namespace sonarith {

/// While an object of this class exists, menus open at its place; of several, at the newest one's.
/// A view makes one around a handler of the logic.
class PopupPlace {
  public:
    /// `global` is a place on the screen.
    explicit PopupPlace(const QPoint& global);
    ~PopupPlace();
    PopupPlace(const PopupPlace&) = delete;
    PopupPlace& operator=(const PopupPlace&) = delete;

    /// Without an object, the pointer's place.
    [[nodiscard]] static QPoint current();

  private:
    std::optional<QPoint> outer_;
};

} // namespace sonarith
