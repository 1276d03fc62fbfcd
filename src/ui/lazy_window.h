// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the window of a form when the form is first shown, and keeps the window until this object
// is destroyed. So the start of the program creates only the windows that it shows.
#pragma once

#include <memory>

#include "ui/form_window.h"

namespace sonarith {

class LazyWindow {
  public:
    /// The form of `layout` must outlive this object. `help` runs when the user requests help in
    /// the window.
    explicit LazyWindow(WindowLayout layout, HelpCall help = {});

    /// Null until the form is first visible.
    [[nodiscard]] FormWindow* window() const { return window_.get(); }

  private:
    void makeIfVisible();

    WindowLayout layout_;
    HelpCall help_;
    std::unique_ptr<FormWindow> window_;
    Connection changed_;
};

} // namespace sonarith
