// SPDX-License-Identifier: GPL-3.0-or-later
// The interface through which the logic uses the notification area of the desktop's panel: icons
// with a tool tip and a menu. Interface only; the logic implements the actions of the menu.
//
// Life cycle: an icon is added once, may be modified while it exists, and is removed. If no panel
// shows the notification area when an icon is added, the icon appears as soon as such a panel
// starts. Used on the logic thread only.
#pragma once

#include <cstdint>
#include <string>

#include "platform/controls/control.h"
#include "platform/controls/form.h"

namespace sonarith {

/// Maximum length of the tool tip, in characters.
inline constexpr std::size_t longestTrayTip = 63;

/// Describes an icon of the notification area.
struct TrayIcon {
    std::uint32_t identifier = 0;
    Form* form = nullptr; ///< the form that owns the icon
    std::string tip;      ///< the tool tip: at most longestTrayTip characters
};

class Tray {
  public:
    virtual ~Tray() = default;
    /// add(), modify() and remove() return true on success. add() returns false if the identifier
    /// already exists; modify() and remove() return false if it does not exist.
    virtual bool add(const TrayIcon& icon) = 0;
    virtual bool modify(const TrayIcon& icon) = 0;
    virtual bool remove(std::uint32_t identifier) = 0;
    /// Sets the menu that the right mouse button or the keyboard opens on any of the icons.
    /// Whenever the menu opens, its onOpen runs first.
    virtual void setMenu(MenuItem& menu) = 0;

    /// Whether a panel now shows the notification area, so that the user can open a hidden window
    /// through a tray icon.
    [[nodiscard]] virtual bool hostPresent() const = 0;
    /// Emitted when hostPresent() has changed.
    Signal<> hostChanged;
};

} // namespace sonarith
