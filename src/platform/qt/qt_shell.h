// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop around the program: screen size, help viewer, about box.
#pragma once

#include <functional>
#include <string>

#include "platform/notices.h"
#include "platform/shell.h"

namespace sonarith {

class QtShell : public Shell {
  public:
    /// Converts a path from the logic's form to the machine's, and opens a file in its viewer; if
    /// the latter is empty, the desktop's viewer is used.
    using ToMachinePath = std::function<std::string(const std::string&)>;
    using OpenFile = std::function<void(const std::string& machinePath)>;

    /// `notices` must outlive the shell.
    QtShell(std::string title, ToMachinePath toMachinePath, Notices& notices,
            OpenFile openFile = {});

    [[nodiscard]] Twips screenWidth() const override;
    [[nodiscard]] Twips screenHeight() const override;
    /// A missing file is reported as a notice. If no viewer is installed, the desktop reports it.
    void showHelp(const std::string& path) override;
    /// Returns when the user has closed the box.
    void showAboutBox() override;
    [[nodiscard]] std::uint64_t windowHandle(const Control& control) const override;

  private:
    std::string title_;
    ToMachinePath toMachinePath_;
    Notices& notices_;
    OpenFile openFile_;
};

} // namespace sonarith
