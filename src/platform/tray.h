// SPDX-License-Identifier: GPL-3.0-or-later
// The interface through which the logic uses the notification area of the desktop's panel: icons
// with a tip and a menu. Interface only; the actions of the menu belong to the logic.
//
// Life cycle: an icon is added once, modified while it exists, and removed. An icon that is added
// while no panel shows the area is shown when such a panel starts. Used on the logic thread only.
#pragma once

#include <cstdint>
#include <string>

#include "platform/controls/control.h"
#include "platform/controls/form.h"

namespace sonarith {

/// Maximum length of the tip, in characters.
inline constexpr std::size_t longestTrayTip = 63;

/// An icon as it is to appear in the area.
struct TrayIcon {
    std::uint32_t identifier = 0;
    Form* form = nullptr; ///< the form that owns it
    std::string tip;      ///< at most longestTrayTip characters
};

class Tray {
  public:
    virtual ~Tray() = default;
    /// Each returns true on success. add() returns false for an identifier that exists already;
    /// modify() and remove() for one that does not.
    virtual bool add(const TrayIcon& icon) = 0;
    virtual bool modify(const TrayIcon& icon) = 0;
    virtual bool remove(std::uint32_t identifier) = 0;
    /// Sets the menu that the right mouse button or the keyboard opens on the icon, through an
    /// event of the icon's form. The menu's onOpen runs first.
    virtual void setMenu(MenuItem& menu) = 0;

    /// Whether a panel shows icons now, so that the user can reach a hidden window.
    [[nodiscard]] virtual bool hostPresent() const = 0;
    /// Emitted when hostPresent() has changed.
    Signal<> hostChanged;
};

} // namespace sonarith
