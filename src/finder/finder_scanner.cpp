// SPDX-License-Identifier: GPL-3.0-or-later
#include "finder/finder_scanner.h"

namespace sonarith {

Status FinderScanner::setFolder(const std::string& path) {
    finder_.touch();
    return finder_.Dir1.setPath(path);
}

void FinderScanner::search(const std::string& extension) {
    finder_.touch();
    finder_.zFileExt.setText(extension);
    finder_.Command1.click();
}

const ListBox& FinderScanner::lstfiles() const {
    finder_.touch();
    return finder_.lstfiles;
}

} // namespace sonarith
