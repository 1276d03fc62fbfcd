// SPDX-License-Identifier: GPL-3.0-or-later
// Makes the window of a form when the form is first shown: a start builds only what it shows. From
// then on the window lives as long as this.
#pragma once

#include <memory>

#include "ui/form_window.h"

namespace sonarith {

class LazyWindow {
  public:
    /// The form of `layout` outlives this. `help` runs when the user asks for help in the window.
    explicit LazyWindow(WindowLayout layout, HelpCall help = {});

    /// Null before the form was first visible.
    [[nodiscard]] FormWindow* window() const { return window_.get(); }

  private:
    void makeIfVisible();

    WindowLayout layout_;
    HelpCall help_;
    std::unique_ptr<FormWindow> window_;
    Connection changed_;
};

} // namespace sonarith
