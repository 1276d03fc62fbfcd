// SPDX-License-Identifier: GPL-3.0-or-later
// The help pages that ship with the program: their list, their folder, and the page about each
// window. Their text is in share/help/.
#pragma once

#include <string>
#include <vector>

#include <QString>

namespace sonarith {

struct HelpPage {
    QString file; ///< below the help folder
    QString title;
};

/// In the order of the contents.
[[nodiscard]] const std::vector<HelpPage>& helpPages();

/// The file of the page about a window, by the name of its form or dialog; the first page for any
/// other name.
[[nodiscard]] QString helpPageOf(const std::string& window);

/// The folder of the pages: that of the installed program, or the copy within the executable.
[[nodiscard]] QString helpFolder();

} // namespace sonarith
