// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the two parts of the file finder (the search; the logic of the window) and connects them.
// This struct adds no behaviour.
#pragma once

#include "finder/finder_window.h"
#include "finder/search_engine.h"
#include "forms/windows.h"
#include "platform/platform.h"
#include "worktree/add_file.h"
#include "worktree/work_tree.h"

namespace sonarith {

struct Finder {
    /// All parameters must outlive this object.
    Finder(const Platform& platform, Windows& windows, FileAdder& adder, WorkTree& tree)
        : engine(windows.frmsearch, platform.directories, platform.loop),
          window(platform, windows.frmsearch, engine, adder, tree) {}

    SearchEngine engine;
    FinderWindow window;
};

} // namespace sonarith
