// SPDX-License-Identifier: GPL-3.0-or-later
// The interface to the desktop for the screen's size, the help, the about box and the number that
// identifies a window. Other parts of the desktop have interfaces of their own.
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
    /// Shows the help file with this path of the logic. If there is no such file, shows the help
    /// that ships with the program.
    virtual void showHelp(const std::string& path) = 0;
    virtual void showAboutBox() = 0;
    /// The number that the window system gives the window that shows `control`; 0 if there is no
    /// such window. Device commands may contain this number.
    [[nodiscard]] virtual std::uint64_t windowHandle(const Control& control) const = 0;
};

} // namespace sonarith
