// SPDX-License-Identifier: GPL-3.0-or-later
// Lets the work tree search with the file finder: sets the finder's folder and extension and clicks
// its button as a user would, without showing the window. SearchEngine does the search.
#pragma once

#include <string>

#include "forms/frm_search.h"
#include "worktree/folder_scanner.h"

namespace sonarith {

class FinderScanner final : public FolderScanner {
  public:
    /// `finder` must outlive this object.
    explicit FinderScanner(FrmSearch& finder) : finder_(finder) {}

    Status setFolder(const std::string& path) override;
    /// Clicks Command1. If a search is running, the click stops that search and starts no other
    /// search.
    void search(const std::string& extension) override;
    [[nodiscard]] const ListBox& lstfiles() const override;

  private:
    FrmSearch& finder_;
};

} // namespace sonarith
