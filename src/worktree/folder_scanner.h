// SPDX-License-Identifier: GPL-3.0-or-later
// The file finder as the work tree uses it: one search of a folder at a time, and its result list.
// The finder's own window and its other uses are not the tree's business.
#pragma once

#include <string>

#include "platform/controls/list_box.h"
#include "platform/result.h"

namespace sonarith {

class FolderScanner {
  public:
    virtual ~FolderScanner() = default;
    /// The folder (`Dir1`) that searches begin in. Errors, keeping the former folder: pathNotFound
    /// and whatever else keeps it from being entered.
    virtual Status setFolder(const std::string& path) = 0;
    /// A whole search (`zFileExt`, then `Command1_Click`) for files of an extension such as "wav",
    /// in place of the former result. Yields while it runs.
    virtual void search(const std::string& extension) = 0;
    /// The paths found, and the current entry.
    [[nodiscard]] virtual const ListBox& lstfiles() const = 0;
};

} // namespace sonarith
