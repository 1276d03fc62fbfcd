// SPDX-License-Identifier: GPL-3.0-or-later
// Lists the help pages that ship with the program, and finds their folder and the page about a
// given window. The texts of the pages are in share/help/.
#pragma once

#include <string>
#include <vector>

#include <QString>

namespace sonarith {

struct HelpPage {
    QString file; ///< the name of a file in helpFolder()
    QString title;
};

/// All pages, in the order of the table of contents.
[[nodiscard]] const std::vector<HelpPage>& helpPages();

/// The file of the page about a window. Without such a page, the file of the first page. `window`
/// is the name of the window's form or dialog.
[[nodiscard]] QString helpPageOf(const std::string& window);

/// The folder of the pages: the folder that is installed with the program, or, if that is missing,
/// the copy within the executable.
[[nodiscard]] QString helpFolder();

} // namespace sonarith
