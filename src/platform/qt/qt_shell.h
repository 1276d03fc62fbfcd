// SPDX-License-Identifier: GPL-3.0-or-later
// Implements Shell with Qt: the screen size, the help, the about box, and the number that the
// window system gives a window.
#pragma once

#include <functional>
#include <string>

#include "platform/notices.h"
#include "platform/shell.h"

namespace sonarith {

class QtShell : public Shell {
  public:
    /// Converts a path of the logic ("c:\help.chm") to a machine path. An empty result means that
    /// the path has no counterpart.
    using ToMachinePath = std::function<std::string(const std::string&)>;
    /// Opens a file in a viewer; if the function is empty, the desktop's viewer is used.
    using OpenFile = std::function<void(const std::string& machinePath)>;

    /// Shows the help that ships with the program. Returns false if the help is missing.
    using ShowPages = std::function<bool()>;
    /// Shown in the about box, in addition to the version of Qt.
    struct BuiltWith {
        std::string version;   ///< of this program
        std::string libraries; ///< "name version, name version"
    };

    /// `notices` must outlive the shell.
    QtShell(std::string title, BuiltWith builtWith, ToMachinePath toMachinePath, Notices& notices,
            ShowPages showPages, OpenFile openFile = {});

    [[nodiscard]] Twips screenWidth() const override;
    [[nodiscard]] Twips screenHeight() const override;
    /// If the file exists, opens it with the OpenFile function; a failure to open it is not
    /// reported. If the file does not exist, shows the help that ships with the program; if that
    /// help is missing, too, reports a notice.
    void showHelp(const std::string& path) override;
    /// Returns when the user has closed the box.
    void showAboutBox() override;
    [[nodiscard]] std::uint64_t windowHandle(const Control& control) const override;

  private:
    std::string title_;
    BuiltWith builtWith_;
    ToMachinePath toMachinePath_;
    Notices& notices_;
    ShowPages showPages_;
    OpenFile openFile_;
};

} // namespace sonarith
