// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/tree_selection.h"

#include <string>

#include "platform/text/numbers.h"
#include "platform/text/unicode.h"

namespace sonarith {

TreeSelection::TreeSelection(EventLoop& loop, ProcessState& process, Form1& form, DragState& drag,
                             TreeMoves& moves)
    : loop_(loop), process_(process), form_(form), drag_(drag), moves_(moves) {
    form_.TreeView1.onMouseDown = [this](MouseButtons buttons, const NodeRef& at) {
        TreeView1_MouseDown(buttons, at);
    };
    form_.TreeView1.onMouseUp = [this](MouseButtons, const NodeRef&) {
        TreeView1_MouseUp();
    };
    form_.TreeView1.onDoubleClick = [this] {
        TreeView1_DblClick();
    };
}

void TreeSelection::TreeView1_MouseDown(MouseButtons buttons, const NodeRef& at) {
    TreeView& tree = form_.TreeView1;
    drag_.DragNode = at;
    if (!tree.setSelectedItem(at).ok()) {
        return;
    }
    if (buttons.right) {
        // During an action, the menu is disabled and does not open.
        if (form_.mnupopup.enabled()) {
            form_.popupRequested.emit(form_.mnupopup);
        }
        return;
    }
    const NodeRef highlighted = drag_.LabelEditGuard.empty() ? tree.selectedItem() : drag_.DragNode;
    if (!tree.setDropHighlight(highlighted).ok() || !tree.startLabelEdit().ok()) {
        return;
    }
    loop_.yield();
}

void TreeSelection::TreeView1_MouseUp() {
    TreeView& tree = form_.TreeView1;
    if (const NodeRef selected = tree.selectedItem()) {
        // The caption names the selected node even if that node has no action.
        form_.Label3.setCaption("Next Action:  Process  " + selected->text());
    }
    // This fails while no node is highlighted; the failure is ignored.
    tree.setSelectedItem(tree.dropHighlight()).passOver();
    const NodeRef selected = tree.selectedItem();
    if (selected && lowerCase(selected->text()).starts_with("track ")) {
        // "Track 12 - 00:03:05": the number is in characters 7 and 8.
        roundedToInteger32(numberOf(midCharacters(selected->text(), 7, 2)))
            .storeIn(process_.currentTrack);
    }
}

void TreeSelection::TreeView1_DblClick() {
    moves_.moveSelected();
}

} // namespace sonarith
