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
    /// Turns a path of the logic's form into the machine's, and opens a file in its viewer; the
    /// latter is the desktop's own when empty.
    using ToMachinePath = std::function<std::string(const std::string&)>;
    using OpenFile = std::function<void(const std::string& machinePath)>;

    /// `notices` outlives the shell.
    QtShell(std::string title, ToMachinePath toMachinePath, Notices& notices,
            OpenFile openFile = {});

    [[nodiscard]] Twips screenWidth() const override;
    [[nodiscard]] Twips screenHeight() const override;
    /// A file that is not there is reported as a notice; no viewer for it is the desktop's affair.
    void showHelp(const std::string& path) override;
    /// Returns when the box was closed.
    void showAboutBox() override;
    [[nodiscard]] std::uint64_t windowHandle(const Control& control) const override;

  private:
    std::string title_;
    ToMachinePath toMachinePath_;
    Notices& notices_;
    OpenFile openFile_;
};

} // namespace sonarith
