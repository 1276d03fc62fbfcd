// SPDX-License-Identifier: GPL-3.0-or-later
// The program in the desktop's tray: its icon with a tip that follows the main window's title, and
// the menu on it. It stands there for as long as frmpopup is loaded; who loads that form hides the
// main window too, if it is to be hidden.
#pragma once

#include <cstdint>
#include <optional>

#include "desktop/tray_icon.h"
#include "forms/windows.h"
#include "platform/platform.h"

namespace sonarith {

/// Takes a window out of sight: it hides while a panel shows the icon by which it comes back, and
/// shrinks to its task bar entry where there is none.
void minimizeToTray(Form& window, const Tray& tray);

class ControlPanel {
  public:
    /// Becomes the handler of frmpopup's events. Both outlive this.
    ControlPanel(const Platform& platform, Windows& windows);
    ControlPanel(const ControlPanel&) = delete;
    ControlPanel& operator=(const ControlPanel&) = delete;

    void Form_Load();
    void Form_Unload();
    /// The tip follows the main window's title. Yields.
    void Timer1_Timer();
    /// So does the form's own title. Yields.
    void Timer2_Timer();
    /// The menu is about to open. A left click on the icon has no handler: it does nothing.
    void Popup_Open();

    void mnuStopencoding_Click();
    void Exit_Click();
    /// Ends the process, whatever runs.
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
