// SPDX-License-Identifier: GPL-3.0-or-later
// Help on the window that requested it. All windows click the main window's help button, which
// passes no window; so this class stores the window that requested help.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ui/help_window.h"

namespace sonarith {

class ProgramHelp {
  public:
    /// `folder` returns the folder of the pages, such as helpFolder(). It is called when help is
    /// first shown, since it reads the disk.
    explicit ProgramHelp(std::function<QString()> folder);

    /// Runs `press`; help that is shown during this call is the page about `window` (the name of a
    /// form).
    void askFrom(const std::string& window, const std::function<void()>& press);
    /// Shows the page about the window that requested help, or about the main window if none did.
    /// Returns false if there is no such page.
    bool show();
    /// Null until help is first shown.
    [[nodiscard]] HelpWindow* window() const { return window_.get(); }

  private:
    std::function<QString()> folder_;
    std::string asker_;
    std::unique_ptr<HelpWindow> window_;
};

} // namespace sonarith
