// SPDX-License-Identifier: GPL-3.0-or-later
// The fixture of the tests of tree_drag.h.
#pragma once

#include <string>

#include "support/work_tree_world.h"
#include "worktree/tree_drag.h"

namespace sonarith {

/// Counts the requests to start a drag.
struct DragLog : test::RevealLog {
    int drags = 0;
    void dragRequested() override { ++drags; }
};

struct TreeDragTest : test::WorkTreeWorld {
    inline static const std::string t1 = "Track  1 - 00:03:05";
    inline static const std::string t2 = "Track  2 - 00:04:00";
    inline static const std::string wav = "c:\\music\\a.wav";
    inline static const std::string mp3 = "c:\\music\\b.mp3";
    inline static const std::string otherMp3 = "c:\\music\\c.mp3";

    DragLog observer;

    TreeDragTest() {
        disc({t1, t2});
        finder.files[destination]["wav"] = {wav};
        finder.files[destination]["mp3"] = {otherMp3, mp3};
        tree.showfiles();
        view.setObserver(&observer);
    }
    ~TreeDragTest() override { view.setObserver(nullptr); }

    NodeRef addTo(const std::string& group, const std::string& text) {
        return addItem(view, node(group), "p added " + text, text).value();
    }
    void move(MouseButtons down) { run(view.onMouseMove, down, NodeRef()); }
};

} // namespace sonarith
