// SPDX-License-Identifier: GPL-3.0-or-later
// The finder as the work tree uses it: works its boxes and its button as a user would, with the
// window unshown. It searches nothing itself.
#pragma once

#include <string>

#include "forms/frm_search.h"
#include "worktree/folder_scanner.h"

namespace sonarith {

class FinderScanner final : public FolderScanner {
  public:
    /// `finder` must outlive this.
    explicit FinderScanner(FrmSearch& finder) : finder_(finder) {}

    Status setFolder(const std::string& path) override;
    /// The click of Command1: a search that runs already is stopped by it.
    void search(const std::string& extension) override;
    [[nodiscard]] const ListBox& lstfiles() const override;

  private:
    FrmSearch& finder_;
};

} // namespace sonarith
