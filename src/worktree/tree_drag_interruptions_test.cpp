// SPDX-License-Identifier: GPL-3.0-or-later
// Tests events that occur inside the yields of a move during a drag.
#include <functional>
#include <string>
#include <vector>

#include "worktree/tree_drag_fixture.h"

namespace sonarith {
namespace {

/// An event during a move, and the expected contents of groups and lists after the drag.
struct Interruption {
    const char* what;
    std::function<void(TreeDragTest&)> event;
    /// The yield in which the event occurs. In yield 1, the entry has been removed from its
    /// old list but not yet added to its new list. Yield 2 follows the change of the tree.
    int yield;
    std::vector<std::string> selectedGroup;
    std::vector<std::string> otherGroup;
    std::vector<std::string> selectedList;
    std::vector<std::string> otherList;
};

TEST_F(TreeDragTest, EventsInsideAMoveLeaveTreeAndListsAsExpected) {
    const auto clear = [](TreeDragTest& t) {
        t.view.clear();
    };
    const auto refresh = [](TreeDragTest& t) {
        t.tree.showfiles();
    };
    const auto endDrag = [](TreeDragTest& t) {
        t.drop();
    };
    const auto pressElsewhere = [](TreeDragTest& t) {
        t.press(t.node("CD Tracks"));
    };
    const auto moveAnother = [](TreeDragTest& t) {
        t.doubleClick(otherMp3);
    };
    const auto dragBack = [](TreeDragTest& t) {
        t.dragOver("MP3 Files");
    };
    const Interruption interruptions[] = {
        {"clear", clear, 1, {}, {}, {mp3}, {otherMp3}},
        {"clear", clear, 2, {}, {}, {mp3}, {otherMp3}},
        {"refresh", refresh, 1, {mp3}, {otherMp3}, {mp3}, {mp3, otherMp3}},
        {"refresh", refresh, 2, {mp3}, {otherMp3}, {}, {mp3, otherMp3}},
        {"drop", endDrag, 1, {mp3}, {otherMp3}, {mp3}, {otherMp3}},
        {"drop", endDrag, 2, {mp3}, {otherMp3}, {mp3}, {otherMp3}},
        // In yield 1, the press changes DragNode. So the rest of the move adds the entry of mp3 to
        // the selected list, but does not move the node of mp3.
        {"press", pressElsewhere, 1, {}, {mp3, otherMp3}, {mp3}, {otherMp3}},
        {"press", pressElsewhere, 2, {mp3}, {otherMp3}, {mp3}, {otherMp3}},
        // The double click moves the entry and the node of otherMp3. The rest of the drag's move
        // adds the entry of mp3 to the selected list, but moves the node of otherMp3 back. The node
        // of mp3 does not move.
        {"double click", moveAnother, 1, {}, {mp3, otherMp3}, {mp3, otherMp3}, {}},
        // Here the entry of mp3 occurs twice after the double click.
        {"double click", moveAnother, 2, {mp3, otherMp3}, {}, {mp3, otherMp3, mp3}, {}},
        // Each move takes the node from its present group to the other group, even if the pointer
        // is over the present group. In yield 1 the node has not moved yet. So the event moves it
        // to the selected group, and the rest of the first move moves it back.
        {"drag back", dragBack, 1, {}, {otherMp3, mp3}, {mp3}, {otherMp3}},
        {"drag back", dragBack, 2, {}, {otherMp3, mp3}, {}, {mp3, otherMp3}},
    };
    for (const Interruption& interruption : interruptions) {
        SCOPED_TRACE(interruption.what + std::string(" inside yield ") +
                     std::to_string(interruption.yield));
        view.clear();
        drag = {};
        disc({t1, t2});
        tree.showfiles();
        beginDrag(mp3);
        bool happened = false;
        loop.atYield(interruption.yield, [&] {
            happened = true;
            interruption.event(*this);
        });
        dragOver("Selected MP3 Files");
        drop();
        EXPECT_TRUE(happened);
        EXPECT_EQ(childrenOf("Selected MP3 Files"), interruption.selectedGroup);
        EXPECT_EQ(childrenOf("MP3 Files"), interruption.otherGroup);
        EXPECT_EQ(lines(form.List4), interruption.selectedList);
        EXPECT_EQ(lines(form.List2), interruption.otherList);
    }
}

} // namespace
} // namespace sonarith
