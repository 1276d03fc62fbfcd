// SPDX-License-Identifier: GPL-3.0-or-later
// The calls that place the program's icon in the notification area, over one record that all of
// them fill. When they are made, and what the icon's menu does, is control_panel.h.
#pragma once

#include <cstdint>
#include <string>

#include "platform/controls/form.h"
#include "platform/tray.h"

namespace sonarith {

/// Whether a call succeeded is not looked at: without a panel there is nothing else to be done.
class TrayIconCalls {
  public:
    /// `tray` outlives this.
    explicit TrayIconCalls(Tray& tray) : tray_(tray) {}

    /// `identifier` is the number of the icon, `form` its owner, which outlives the icon. Of `tip`
    /// the first longestTrayTip characters are shown.
    void AddTrayIcon(std::uint32_t identifier, Form& form, const std::string& tip);
    void ModifyTrayIcon(std::uint32_t identifier, Form& form, const std::string& tip);
    void DeleteTrayIcon(std::uint32_t identifier);

  private:
    void fill(std::uint32_t identifier, Form& form, const std::string& tip);

    Tray& tray_;
    TrayIcon record_;
};

} // namespace sonarith
