// SPDX-License-Identifier: GPL-3.0-or-later
// What the main window requests from the desktop. Interface only.
#pragma once

#include <cstdint>
#include <string>

#include "platform/controls/control.h"

namespace sonarith {

class Shell {
  public:
    virtual ~Shell() = default;
    /// Size of the screen.
    [[nodiscard]] virtual Twips screenWidth() const = 0;
    [[nodiscard]] virtual Twips screenHeight() const = 0;
    /// Asks the help viewer to show a help file (a path in the logic's form).
    virtual void showHelp(const std::string& path) = 0;
    virtual void showAboutBox() = 0;
    /// The window system's number of the window that shows `control`, for device commands that name
    /// a window; 0 if there is none.
    [[nodiscard]] virtual std::uint64_t windowHandle(const Control& control) const = 0;
};

} // namespace sonarith
