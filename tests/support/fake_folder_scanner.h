// SPDX-License-Identifier: GPL-3.0-or-later
// A folder scanner for tests. The test sets the result for each folder and extension; calls are
// logged.
//
//     FakeFolderScanner finder;
//     finder.files["c:\\music"]["wav"] = {"c:\\music\\a.wav"};
//     finder.whileSearching = [&] { loop.yield(); };
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/controls/form.h"
#include "worktree/folder_scanner.h"

namespace sonarith::test {

class FakeFolderScanner final : public FolderScanner {
  public:
    /// The results of the searches, by folder and extension. setFolder() fails for a folder without
    /// an entry here.
    std::map<std::string, std::map<std::string, std::vector<std::string>>> files;
    /// The folder of the next search.
    std::string folder = "c:\\sonarith";
    /// "folder PATH" and "search EXTENSION", oldest first.
    std::vector<std::string> log;
    /// Runs during each search, before its result is available.
    std::function<void()> whileSearching;
    Form form{"frmsearch"};
    ListBox list{form, "lstfiles"};

    Status setFolder(const std::string& path) override {
        log.push_back("folder " + path);
        if (!files.contains(path)) {
            return {ErrorNumber::pathNotFound, "Path not found"};
        }
        folder = path;
        return {};
    }
    void search(const std::string& extension) override {
        log.push_back("search " + extension);
        list.clear();
        if (whileSearching) {
            whileSearching();
        }
        for (const std::string& path : files[folder][extension]) {
            list.addItem(path);
        }
    }
    [[nodiscard]] const ListBox& lstfiles() const override { return list; }
};

} // namespace sonarith::test
