// SPDX-License-Identifier: GPL-3.0-or-later
// Help on the window that asked for it. All windows ask by the help button of the main window,
// which names no window; so the one that asked is kept here meanwhile.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ui/help_window.h"

namespace sonarith {

class ProgramHelp {
  public:
    /// `folder` holds the pages; see helpFolder().
    explicit ProgramHelp(QString folder);

    /// Runs `press`, and what is shown meanwhile is the page about `window` (the name of a form).
    void askFrom(const std::string& window, const std::function<void()>& press);
    /// Shows the page about the window that asked, the main window if none did. False if there is
    /// no such page.
    bool show();
    /// Null before help was first shown.
    [[nodiscard]] HelpWindow* window() const { return window_.get(); }

  private:
    QString folder_;
    std::string asker_;
    std::unique_ptr<HelpWindow> window_;
};

} // namespace sonarith
