// SPDX-License-Identifier: GPL-3.0-or-later
// Adds, changes and deletes the program's icon in the desktop's tray. The class ControlPanel
// decides when this happens, and handles the icon's menu.
#pragma once

#include <cstdint>
#include <string>

#include "platform/controls/form.h"
#include "platform/tray.h"

namespace sonarith {

/// Ignores the results of the tray: they only report that an identifier already exists (add) or
/// does not exist (modify, remove).
class TrayIconCalls {
  public:
    /// `tray` must outlive this object.
    explicit TrayIconCalls(Tray& tray) : tray_(tray) {}

    /// `identifier` is the number of the icon, `form` its owner, which must outlive the icon. Only
    /// the first longestTrayTip characters of `tip` are shown.
    void AddTrayIcon(std::uint32_t identifier, Form& form, const std::string& tip);
    void ModifyTrayIcon(std::uint32_t identifier, Form& form, const std::string& tip);
    void DeleteTrayIcon(std::uint32_t identifier);

  private:
    void fill(std::uint32_t identifier, Form& form, const std::string& tip);

    Tray& tray_;
    TrayIcon record_;
};

} // namespace sonarith
