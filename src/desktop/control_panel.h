// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the program in the desktop's tray: an icon whose tool tip ("tip") follows the main window's
// title, and the icon's menu. The icon exists while the form frmpopup is loaded. Loading this form
// does not hide the main window; minimizeToTray() does.
#pragma once

#include <cstdint>
#include <optional>

#include "desktop/tray_icon.h"
#include "forms/windows.h"
#include "platform/platform.h"

namespace sonarith {

/// Hides `window` if a panel of the desktop shows tray icons, because the user can then open
/// the window again through the tray icon; otherwise minimizes `window` to the task bar.
void minimizeToTray(Form& window, const Tray& tray);

class ControlPanel {
  public:
    /// Sets the handlers of frmpopup's events. Both parameters must outlive this object.
    ControlPanel(const Platform& platform, Windows& windows);
    ControlPanel(const ControlPanel&) = delete;
    ControlPanel& operator=(const ControlPanel&) = delete;

    void Form_Load();
    void Form_Unload();
    /// Copies the main window's title to the icon's tip. Yields.
    void Timer1_Timer();
    /// Copies the main window's title to frmpopup's own title. Yields.
    void Timer2_Timer();
    /// Copies the main window's title to frmpopup's own title before the menu opens. A left click
    /// on the icon has no handler and no effect.
    void Popup_Open();

    void mnuStopencoding_Click();
    void Exit_Click();
    /// Ends the process, even during an action.
    void mnuEnd_Click();

  private:
    void wireEvents();
    void followHost();

    const Platform& platform_;
    Windows& windows_;
    FrmPopup& form_;
    TrayIconCalls icons_;
    std::optional<std::uint32_t> keptIcon_; ///< set while the form is loaded
    Connection hostChanged_;
};

} // namespace sonarith
