// SPDX-License-Identifier: GPL-3.0-or-later
// Shows help about the window that requested it. The program handles a help request of any window
// by clicking the main window's help button. The click does not state which window requested help,
// so this class stores the name of that window.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ui/help_window.h"

namespace sonarith {

class ProgramHelp {
  public:
    /// `folder`, such as helpFolder, returns the folder of the pages. `folder` reads the disk,
    /// so this constructor does not call it: the first call of show() does.
    explicit ProgramHelp(std::function<QString()> folder);

    /// Runs `press`, which clicks the help button. If `press` calls show(), the page about
    /// `window` (the name of a form or dialog) is shown.
    void askFrom(const std::string& window, const std::function<void()>& press);
    /// While askFrom() runs, shows the page about the window that was passed to askFrom().
    /// Otherwise shows the page about the main window. For a window without a page, shows the first
    /// page of helpPages(). Returns false if the file of the page is missing.
    bool show();
    /// Null only before the first call of show().
    [[nodiscard]] HelpWindow* window() const { return window_.get(); }

  private:
    std::function<QString()> folder_;
    std::string asker_;
    std::unique_ptr<HelpWindow> window_;
};

} // namespace sonarith
