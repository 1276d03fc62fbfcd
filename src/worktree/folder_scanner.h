// SPDX-License-Identifier: GPL-3.0-or-later
// The interface through which the work tree uses the file finder: one search of a folder at a time,
// and the list of its results. The finder's window and the finder's other uses are not part of
// this interface.
#pragma once

#include <string>

#include "platform/controls/list_box.h"
#include "platform/result.h"

namespace sonarith {

class FolderScanner {
  public:
    virtual ~FolderScanner() = default;
    /// Sets the folder in which searches start (the finder's `Dir1`). Error: pathNotFound, which
    /// keeps the old folder.
    virtual Status setFolder(const std::string& path) = 0;
    /// Searches for files with an extension such as "wav" and replaces the previous result. Sets
    /// the finder's box `zFileExt` and clicks its button `Command1`. The name in the finder's box
    /// `Text1` also limits the search. Yields until the search ends. If a search is already
    /// running, the click only stops that search.
    virtual void search(const std::string& extension) = 0;
    /// The list of the paths found; its current line is the finder's selection.
    [[nodiscard]] virtual const ListBox& lstfiles() const = 0;
};

} // namespace sonarith
