// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/label_edit.h"

namespace sonarith {

namespace {

/// In one case or the other: a mixed ending is refused too.
bool hasRenamableEnding(const std::string& text) {
    return text.ends_with(".wav") || text.ends_with(".WAV") || text.ends_with(".mp3") ||
           text.ends_with(".MP3");
}

} // namespace

void LabelEdit::TreeView1_BeforeLabelEdit(bool& cancel) const {
    const NodeRef selected = form_.TreeView1.selectedItem();
    cancel = !selected || !hasRenamableEnding(selected->text());
}

// Renaming the file behind the label is not built yet. Until it is, a label that differs from its
// file's name would only lead astray, so the old one stays.
void LabelEdit::TreeView1_AfterLabelEdit(bool& cancel, const std::string&) const {
    cancel = true;
}

} // namespace sonarith
