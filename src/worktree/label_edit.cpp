// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/label_edit.h"

#include "platform/text/unicode.h"
#include "platform/text/wildcard.h"
#include "settings/path_helpers.h"
#include "worktree/file_text.h"

namespace sonarith {

LabelEdit::LabelEdit(const Platform& platform, ProcessState& process, Form1& form, DragState& drag)
    : platform_(platform), process_(process), form_(form), drag_(drag) {
    form_.TreeView1.onBeforeLabelEdit = [this](bool& cancel) {
        TreeView1_BeforeLabelEdit(cancel);
    };
    form_.TreeView1.onAfterLabelEdit = [this](bool& cancel, const std::string& text) {
        TreeView1_AfterLabelEdit(cancel, text);
    };
}

void LabelEdit::TreeView1_BeforeLabelEdit(bool& cancel) const {
    const NodeRef selected = form_.TreeView1.selectedItem();
    cancel = !selected || !hasFileEnding(selected->text());
}

void LabelEdit::TreeView1_AfterLabelEdit(bool& cancel, const std::string& newText) {
    if (rename(newText).ok()) {
        return;
    }
    // The file keeps its old name, so the label must keep it, too.
    cancel = true;
    form_.TreeView1.startLabelEdit().passOver();
    takeAsSelection(drag_.DragNode);
}

Status LabelEdit::rename(const std::string& newText) {
    const NodeRef selected = form_.TreeView1.selectedItem();
    if (!selected) {
        return {ErrorNumber::objectNotSet, "No node is selected."};
    }
    const std::string lowered = lowerCase(newText);
    // If only the case changes, the label is set but the file is not renamed.
    if (lowerCase(selected->text()) == lowered) {
        return {};
    }
    const std::string oldName = lowerCase(SplitPath(selected->text(), process_));
    // The new ending determines which lists are searched. If the new name of a WAV file ends in
    // "mp3", the MP3 lists are searched. They normally do not contain the WAV file: then only the
    // label changes.
    Status renamed;
    if (lowered.ends_with("wav")) {
        renamed = renameFirst(oldName, newText, {&form_.List1, &form_.List5});
    } else if (lowered.ends_with("mp3")) {
        renamed = renameFirst(oldName, newText, {&form_.List2, &form_.List4});
    }
    if (!renamed.ok() || !hasFileEnding(newText)) {
        return renamed;
    }
    drag_.DragNode = selected;
    takeAsSelection(selected);
    form_.TreeView1.setText(selected, newText).passOver();
    drag_.LabelEditGuard.clear();
    return {};
}

/// Renames the first entry whose name matches `oldName` (a pattern in lower case), and the file of
/// that entry. If no entry matches, nothing is renamed and the call succeeds.
Status LabelEdit::renameFirst(const std::string& oldName, const std::string& newText,
                              std::initializer_list<ListBox*> lists) {
    for (ListBox* list : lists) {
        for (int i = 0; i < list->listCount(); ++i) {
            const std::string entry = list->list(i);
            if (!matches(lowerCase(SplitPath(entry, process_)), oldName)) {
                continue;
            }
            // SplitDir is the folder of this entry; SplitPath() has set it above.
            const std::string renamed = process_.SplitDir + newText;
            const Status status = platform_.files.rename(entry, renamed);
            return status.ok() ? list->setList(i, renamed) : status;
        }
    }
    return {};
}

void LabelEdit::takeAsSelection(const NodeRef& node) {
    form_.TreeView1.setSelectedItem(node).passOver();
    form_.TreeView1.setDropHighlight(node).passOver();
}

} // namespace sonarith
