// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/tree_moves.h"

#include "worktree/tree_nodes.h"

namespace sonarith {

namespace {

/// Indices of the two groups of tracks after the first build of the tree. A later build can give
/// these indices to other nodes, for example "WAV Files". A track is then moved under such a node.
constexpr int selectedTracksIndex = 2;
constexpr int availableTracksIndex = 3;

enum class Neighbour { before, after };

struct FileMove {
    const char* group; ///< text of the node that moves, or of its parent
    Neighbour target;  ///< the new parent: the sibling before or after the node's parent
};

/// The first matching rule applies.
constexpr FileMove fileMoves[] = {
    {wavFilesText, Neighbour::before},
    {selectedWavFilesText, Neighbour::after},
    {selectedMp3FilesText, Neighbour::after},
    {mp3FilesText, Neighbour::before},
};

} // namespace

void TreeMoves::moveSelected() {
    move(textOf(form_.TreeView1.selectedItem()), MovedBy::doubleClick);
}

void TreeMoves::MoveDraggedNode(const std::string& text) {
    move(text, MovedBy::drag);
}

void TreeMoves::move(const std::string& text, MovedBy movedBy) {
    if (text.empty()) {
        return;
    }
    lists_.moveEntry(text, movedBy);
    moveNode();
}

void TreeMoves::moveNode() {
    form_.TreeView1.setSelectedItem(drag_.DragNode).passOver();
    if (drag_.DragNode && isTrackText(drag_.DragNode->text())) {
        moveTrackNode();
    }
    moveFileNode();
    loop_.yield();
}

void TreeMoves::moveTrackNode() {
    const std::string parent = parentText(drag_.DragNode);
    if (parent == availableTracksText) {
        moveUnderNode(selectedTracksIndex);
    } else if (parent == selectedTracksText) {
        moveUnderNode(availableTracksIndex);
        rebuildAvailableTracks();
    }
}

void TreeMoves::moveUnderNode(int index) {
    TreeView& tree = form_.TreeView1;
    if (const NodeRef target = tree.node(index)) {
        drag_.DropTarget = target;
    }
    tree.setDropHighlight(drag_.DropTarget).passOver();
    tree.setParent(drag_.DragNode, tree.dropHighlight()).passOver();
    tree.setDropHighlight(nullptr).passOver();
}

/// Removes the nodes of the group "Available Tracks" and adds new nodes in the order of lstTracks.
void TreeMoves::rebuildAvailableTracks() {
    TreeView& tree = form_.TreeView1;
    // Removes the nodes from the last to the first, so that a long group is removed in linear time.
    // Removes all children, including those that are not tracks.
    for (int i = tree.count(); i >= 2; --i) {
        if (parentText(tree.node(i)) == availableTracksText) {
            tree.remove(i).passOver();
        }
    }
    const int bound = tree.count();
    for (int i = 2; i <= bound; ++i) {
        const NodeRef group = tree.node(i);
        if (!group || group->text() != availableTracksText) {
            continue;
        }
        for (int line = 0; line < form_.lstTracks.listCount(); ++line) {
            const std::string text = form_.lstTracks.list(line);
            addItem(tree, group, "p name" + text, text).passOver();
            loop_.yield();
        }
    }
}

void TreeMoves::moveFileNode() {
    TreeView& tree = form_.TreeView1;
    const std::string text = textOf(drag_.DragNode);
    const std::string parent = parentText(drag_.DragNode);
    for (const FileMove& move : fileMoves) {
        // A rule matches the group itself as well as its items.
        if (text != move.group && parent != move.group) {
            continue;
        }
        const NodeRef selected = tree.selectedItem();
        const NodeRef from = selected ? selected->parent() : nullptr;
        drag_.DropTarget =
            move.target == Neighbour::before ? tree.previousSibling(from) : tree.nextSibling(from);
        // Without a sibling the node does not move, even if its entry has moved to another list.
        tree.setParent(selected, drag_.DropTarget).passOver();
        return;
    }
}

} // namespace sonarith
