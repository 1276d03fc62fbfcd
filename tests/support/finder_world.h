// SPDX-License-Identifier: GPL-3.0-or-later
// The file finder over folders in memory, in virtual time, with the main window that it reaches
// back for. Base class of the finder's tests.
//
//     disk.addFile("c:\\music\\a.wav");
//     search("c:\\music", ".wav");
//     EXPECT_THAT(lines(finder.lstfiles), ElementsAre("c:\\music\\a.wav"));
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "finder/finder_scanner.h"
#include "finder/finder_window.h"
#include "finder/search_engine.h"
#include "forms/form1.h"
#include "forms/frm_search.h"
#include "forms/windows.h"
#include "support/fake_directories.h"
#include "support/fake_file_system.h"
#include "support/fake_message_boxes.h"
#include "support/fake_shell.h"
#include "support/virtual_event_loop.h"
#include "worktree/add_file.h"
#include "worktree/work_tree.h"

namespace sonarith::test {

struct FinderWorld {
    VirtualEventLoop loop;
    ProcessState process;
    Windows windows;
    Form1 form{loop, process, windows};
    FakeFileSystem files;
    FakeDirectories disk;
    FakeMessageBoxes boxes;
    FakeShell shell;
    FinderForm finder{windows.frmsearch, files, disk};
    SearchEngine engine{finder, disk, loop};
    FinderScanner scanner{finder};
    FileAdder adder{form, process, files, loop};
    WorkTree tree{form, process, scanner, adder};
    FinderWindow window{finder, engine, {loop, files, boxes, shell}, {adder, tree}};

    FinderWorld() {
        disk.addFolder("c:\\");
        windows.frmsearch.load();
    }

    /// What a person does: chooses a folder and a type, and presses the button.
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
