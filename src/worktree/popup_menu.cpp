// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/popup_menu.h"

#include <array>

#include "platform/text/unicode.h"
#include "platform/text/wildcard.h"
#include "settings/destroy_file.h"
#include "settings/path_helpers.h"
#include "worktree/file_text.h"
#include "worktree/node_level.h"
#include "worktree/tree_nodes.h"

namespace sonarith {

namespace {

/// All list boxes with paths of files, in the order in which they are searched.
std::array<ListBox*, 4> fileLists(Form1& form) {
    return {&form.List1, &form.List2, &form.List4, &form.List5};
}

/// Whether an action can be started from a group. `lowered` is the group's text in lower case.
bool isStartableGroup(const std::string& lowered) {
    return lowered == "available tracks" || lowered == "selected tracks" ||
           lowered == "selected mp3 files" || lowered == "mp3 files";
}

} // namespace

PopupMenu::PopupMenu(const Platform& platform, ProcessState& process, Form1& form, DragState& drag)
    : platform_(platform), process_(process), form_(form), drag_(drag) {
    form_.mnupopup.onOpen = [this] {
        mnupopup_Open();
    };
    form_.mnuFileRemove.onClick = [this] {
        mnuFileRemove_Click();
    };
    form_.mnuRemoveDelete.onClick = [this] {
        mnuRemoveDelete_Click();
    };
}

void PopupMenu::mnupopup_Open() {
    drag_.DragLevel = NodeLevel(drag_.DragNode);
    const std::string text = lowerCase(draggedText());
    // The rules apply in this order; each rule overrides the rules before it. For a group without
    // a rule ("WAV Files"), the entries keep the state of the previous opening.
    if (drag_.DragLevel == itemLevel && !text.ends_with(".mp3")) {
        set({});
    }
    if (text.ends_with(".wav")) {
        set({.mnuRemoveDelete = true, .mnuFileRemove = true});
    }
    if (text.ends_with(".mp3")) {
        set({.mnuRemoveDelete = true, .mnuStart2 = true, .mnuFileRemove = true});
    }
    if (text.starts_with("track")) {
        set({.mnuStart2 = true});
    }
    if (isStartableGroup(text)) {
        set({.mnuStart2 = true});
    }
    if (!drag_.DragNode || drag_.DragLevel < groupLevel) {
        set({});
    }
}

void PopupMenu::set(Open open) {
    form_.mnuRemoveDelete.setEnabled(open.mnuRemoveDelete);
    form_.mnuStart2.setEnabled(open.mnuStart2);
    form_.mnuFileRemove.setEnabled(open.mnuFileRemove);
}

std::string PopupMenu::draggedText() const {
    return textOf(drag_.DragNode);
}

void PopupMenu::mnuFileRemove_Click() {
    const std::string text = draggedText();
    if (!hasFileEnding(text)) {
        return;
    }
    platform_.loop.yield();
    removeNode(text);
    for (ListBox* list : fileLists(form_)) {
        for (int i = 0; i < list->listCount(); ++i) {
            // Compares only the whole entry. mnuRemoveDelete_Click() compares the entry's file
            // name, too. If the node shows only a file name, the entry with the file's path stays
            // in the list. An MP3 file whose entry stays is still decoded with its group.
            if (matches(list->list(i), text)) {
                list->removeItem(i).passOver();
                return;
            }
        }
    }
}

void PopupMenu::mnuRemoveDelete_Click() {
    const std::string text = draggedText();
    if (const std::string lowered = lowerCase(text);
        !lowered.ends_with(".wav") && !lowered.ends_with(".mp3")) {
        return;
    }
    platform_.loop.yield();
    removeNode(text);
    for (ListBox* list : fileLists(form_)) {
        for (int i = 0; i < list->listCount(); ++i) {
            const std::string entry = list->list(i);
            if (matches(entry, text) || matches(SplitPath(entry, process_), text)) {
                destroy(*list, i);
                return;
            }
        }
    }
}

void PopupMenu::removeNode(const std::string& text) {
    form_.TreeView1.remove(firstNodeOfText(form_.TreeView1, text)).passOver();
}

/// Deletes the file of an entry and removes the entry from the list, even if the file could not be
/// deleted.
void PopupMenu::destroy(ListBox& list, int index) {
    const std::string entry = list.list(index);
    p_DestroyFile(entry, platform_.files, platform_.loop).passOver();
    // The deletion yields, and during a yield the entry may have moved or been removed.
    int now = 0;
    while (now < list.listCount() && list.list(now) != entry) {
        ++now;
    }
    list.removeItem(now).passOver();
}

} // namespace sonarith
