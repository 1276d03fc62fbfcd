// SPDX-License-Identifier: GPL-3.0-or-later
// Searches files for the work tree: fills the finder's boxes and clicks its button as a user would,
// without showing the window. It does not search itself.
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
    /// Clicks Command1. If a search is running, the click stops it and starts no other.
    void search(const std::string& extension) override;
    [[nodiscard]] const ListBox& lstfiles() const override;

  private:
    FrmSearch& finder_;
};

} // namespace sonarith
