// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/tree_drag.h"

#include "worktree/node_level.h"
#include "worktree/tree_nodes.h"

namespace sonarith {

namespace {

/// Whether a node with the text `target` refuses a node with the text `dragged`. Only "Selected
/// Tracks" and tracks accept a track. Only the two groups of WAV files accept a WAV file. Only the
/// two groups of MP3 files accept an MP3 file. Other texts are never refused.
bool refuses(const std::string& target, const std::string& dragged) {
    const bool keepsTrackOut =
        isTrackText(dragged) && target != selectedTracksText && !isTrackText(target);
    const bool keepsWavOut =
        dragged.ends_with("wav") && target != selectedWavFilesText && target != wavFilesText;
    const bool keepsMp3Out =
        dragged.ends_with("mp3") && target != selectedMp3FilesText && target != mp3FilesText;
    return keepsTrackOut || keepsWavOut || keepsMp3Out;
}

} // namespace

TreeDrag::TreeDrag(Form1& form, DragState& drag, TreeMoves& moves)
    : form_(form), drag_(drag), moves_(moves) {
    form_.TreeView1.onMouseMove = [this](MouseButtons down, const NodeRef&) {
        TreeView1_MouseMove(down);
    };
    form_.TreeView1.onDragOver = [this](const NodeRef& target) {
        TreeView1_DragOver(target);
    };
    form_.TreeView1.onDragDrop = [this](const NodeRef&) {
        TreeView1_DragDrop();
    };
}

void TreeDrag::TreeView1_MouseMove(MouseButtons down) {
    if (drag_.InDrag || !down.left || down.right) {
        return;
    }
    drag_.DragLevel = NodeLevel(drag_.DragNode);
    if (drag_.DragLevel != groupLevel) {
        form_.TreeView1.setSelectedItem(drag_.DragNode).passOver();
        // The tree's view chooses the picture of the pointer during the drag.
        form_.TreeView1.beginDrag();
    }
}

bool TreeDrag::levelsFit(const NodeRef& target) const {
    const int level = NodeLevel(target);
    return target && (level + 1 == drag_.DragLevel || level == drag_.DragLevel);
}

void TreeDrag::TreeView1_DragOver(const NodeRef& target) {
    // Meant to ignore repeated events over one node, so that DragNode moves only once. But
    // MoveDraggedNode() sets DropTarget to the group to which it moves DragNode. So after DragNode
    // has moved, a repeated event is ignored only if the pointer is over that group. Otherwise the
    // repeated event moves DragNode back.
    if (target == drag_.DropTarget) {
        return;
    }
    drag_.DropTarget = target;
    TreeView& tree = form_.TreeView1;
    const std::string dragged = textOf(drag_.DragNode);
    if (!levelsFit(target)) {
        // Over a node of the wrong level, nothing is highlighted. So if the user drops DragNode
        // there, the drop itself does not move DragNode. But this event moves DragNode: see
        // MoveDraggedNode() below.
        tree.setDropHighlight(nullptr).passOver();
    } else if (refuses(target->text(), dragged)) {
        return;
    } else {
        if (NodeLevel(target) == itemLevel) {
            drag_.DropTarget = target->parent();
        }
        tree.setDropHighlight(drag_.DropTarget).passOver();
    }
    moves_.MoveDraggedNode(dragged);
}

void TreeDrag::TreeView1_DragDrop() {
    TreeView& tree = form_.TreeView1;
    // Nothing is highlighted if the last event moved a track to its other group: TreeMoves clears
    // the highlight after such a move. A file is put under the highlighted group, even if the moves
    // during the drag have put it elsewhere.
    if (const NodeRef highlighted = tree.dropHighlight()) {
        tree.setParent(drag_.DragNode, highlighted).passOver();
        tree.setDropHighlight(nullptr).passOver();
    }
    drag_.DragNode = nullptr;
    drag_.DragLevel = 0;
}

} // namespace sonarith
