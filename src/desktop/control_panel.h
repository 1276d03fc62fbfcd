// SPDX-License-Identifier: GPL-3.0-or-later
// The program in the desktop's tray: its icon with a tip that follows the main window's title, and
// the icon's menu. The icon exists while frmpopup is loaded; hiding the main window is up to the
// code that loads that form.
#pragma once

#include <cstdint>
#include <optional>

#include "desktop/tray_icon.h"
#include "forms/windows.h"
#include "platform/platform.h"

namespace sonarith {

/// Hides a window if a panel shows the icon that restores it; otherwise minimizes it to its task
/// bar entry.
void minimizeToTray(Form& window, const Tray& tray);

class ControlPanel {
  public:
    /// Sets the handlers of frmpopup's events. Both must outlive this.
    ControlPanel(const Platform& platform, Windows& windows);
    ControlPanel(const ControlPanel&) = delete;
    ControlPanel& operator=(const ControlPanel&) = delete;

    void Form_Load();
    void Form_Unload();
    /// The tip follows the main window's title. Yields.
    void Timer1_Timer();
    /// The form's own title follows it, too. Yields.
    void Timer2_Timer();
    /// The menu is about to open. A left click on the icon has no handler: it does nothing.
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
    std::optional<std::uint32_t> keptIcon_; ///< while the form is loaded
    Connection hostChanged_;
};

} // namespace sonarith
