// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the file finder and the main window, which the finder uses. The folders are in memory,
// and time is virtual. Base class of the finder's tests.
//
//     disk.addFile("c:\\music\\a.wav");
//     search("c:\\music", ".wav");
//     EXPECT_THAT(lines(finder.lstfiles), ElementsAre("c:\\music\\a.wav"));
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "finder/finder.h"
#include "finder/finder_scanner.h"
#include "finder/finder_window.h"
#include "finder/search_engine.h"
#include "forms/windows.h"
#include "support/fake_machine.h"
#include "worktree/work_tree_jobs.h"

namespace sonarith::test {

struct FinderWorld : FakeMachine {
    FakeDirectories& disk = directories;
    ProcessState process;
    Windows windows{platform, process};
    Form1& form = windows.Form1;
    FrmSearch& finder = windows.frmsearch;
    FinderScanner scanner{finder};
    WorkTreeJobs jobs{platform, process, windows, scanner};
    WorkTree& tree = jobs.tree;
    Finder subsystem{platform, windows, jobs.adder, tree};
    SearchEngine& engine = subsystem.engine;
    FinderWindow& window = subsystem.window;

    FinderWorld() {
        disk.addFolder("c:\\");
        windows.frmsearch.load();
    }

    /// Simulates the user: chooses a folder and a file type, and presses the button that starts the
    /// search.
    void search(const std::string& folder, const std::string& type) {
        EXPECT_TRUE(finder.Dir1.setPath(folder).ok());
        finder.zFileExt.setText(type);
        finder.Command1.click();
    }

    [[nodiscard]] static std::vector<std::string> lines(const ListBox& list) {
        std::vector<std::string> all;
        for (int i = 0; i < list.listCount(); ++i) {
            all.push_back(list.list(i));
        }
        return all;
    }
};

} // namespace sonarith::test
