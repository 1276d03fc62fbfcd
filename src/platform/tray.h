// SPDX-License-Identifier: GPL-3.0-or-later
// The notification area of the desktop's panel, as the logic addresses it: an icon with a tip, and
// the event that opens its menu. Interface only; what the menu does is the logic's.
//
// Life cycle: an icon is added once, modified while it stands, and removed. An icon that is added
// while no panel shows the area appears when one comes. Used by the logic's thread alone.
#pragma once

#include <cstdint>
#include <string>

#include "platform/controls/control.h"
#include "platform/controls/form.h"

namespace sonarith {

/// The longest tip, in characters.
inline constexpr std::size_t longestTrayTip = 63;

/// An icon as it is to stand in the area.
struct TrayIcon {
    std::uint32_t identifier = 0;
    Form* form = nullptr; ///< the form that owns it
    std::string tip;      ///< at most longestTrayTip characters
};

class Tray {
  public:
    virtual ~Tray() = default;
    /// Each is true if it was done. add: false for an identifier that stands already; modify and
    /// remove: false for one that does not.
    virtual bool add(const TrayIcon& icon) = 0;
    virtual bool modify(const TrayIcon& icon) = 0;
    virtual bool remove(std::uint32_t identifier) = 0;
    /// The menu that opens on the icon by its form's event, with the right button or the keyboard.
    /// The menu's onOpen runs first.
    virtual void setMenu(MenuItem& menu) = 0;

    /// Whether a panel shows icons now, so that a hidden window can be reached.
    [[nodiscard]] virtual bool hostPresent() const = 0;
    /// hostPresent() has become another.
    Signal<> hostChanged;
};

} // namespace sonarith
