// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/list_moves.h"

#include <array>

#include "platform/text/wildcard.h"
#include "settings/path_helpers.h"
#include "worktree/tree_nodes.h"

namespace sonarith {

namespace {

/// The index of the first line that matches the pattern `s`; -1 if no line matches.
int firstMatch(const ListBox& list, const std::string& s) {
    for (int i = 0; i < list.listCount(); ++i) {
        if (matches(list.list(i), s)) {
            return i;
        }
    }
    return -1;
}

} // namespace

void ListMoves::moveEntry(const std::string& text, MovedBy movedBy) {
    const std::string dragged = parentText(drag_.DragNode);
    if (isTrackText(text) && dragged == availableTracksText) {
        selectTrack(text);
    } else if (isTrackText(text) && dragged == selectedTracksText) {
        returnTrack(text);
    } else {
        moveFileEntry(movedBy == MovedBy::drag ? wholeEntry(text) : text, movedBy);
    }
}

void ListMoves::moveFileEntry(const std::string& s, MovedBy movedBy) {
    // The rule for a WAV file depends on the parent of the selected node, the rule for an MP3 file
    // on the parent of DragNode.
    const std::string selected = parentText(form_.TreeView1.selectedItem());
    const std::string dragged = parentText(drag_.DragNode);
    if (s.ends_with("wav") && selected == wavFilesText) {
        selectWav(s);
    } else if (s.ends_with("wav") && selected == selectedWavFilesText) {
        returnWav(s);
    } else if (s.ends_with("mp3") && dragged == mp3FilesText) {
        selectMp3(s, movedBy);
    } else if (s.ends_with("mp3") && dragged == selectedMp3FilesText) {
        returnMp3(s);
    }
}

/// The first entry whose file name matches that of `text`; without such an entry, `text` itself.
std::string ListMoves::wholeEntry(const std::string& text) {
    std::array<const ListBox*, 2> lists;
    if (text.ends_with("wav")) {
        lists = {&form_.List1, &form_.List5};
    } else if (text.ends_with("mp3")) {
        lists = {&form_.List2, &form_.List4};
    } else {
        return text;
    }
    const std::string name = SplitPath(text, process_);
    for (const ListBox* list : lists) {
        for (int i = 0; i < list->listCount(); ++i) {
            if (matches(SplitPath(list->list(i), process_), name)) {
                return list->list(i);
            }
        }
    }
    return text;
}

void ListMoves::selectTrack(const std::string& s) {
    const int found = firstMatch(form_.lstTracks, s);
    if (found < 0) {
        return;
    }
    // Inserted at the top, so the track that was chosen last is extracted first.
    putOnTop(form_.lstRecord, form_.lstTracks.list(found), form_.List7);
    form_.lstTracks.removeItem(found).passOver();
}

void ListMoves::returnTrack(const std::string& s) {
    const int found = firstMatch(form_.lstRecord, s);
    if (found < 0) {
        return;
    }
    // Added at the end, not at the position of its number.
    form_.lstTracks.addItem(form_.lstRecord.list(found));
    form_.lstRecord.removeItem(found).passOver();
}

void ListMoves::selectWav(const std::string& s) {
    const auto matching = [&](const std::string& entry) {
        return matches(entry, s);
    };
    removeEntries(form_.List1, matching);
    removeEntries(form_.List5, matching);
    putOnTop(form_.List5, s, form_.List7);
}

void ListMoves::returnWav(const std::string& s) {
    removeEntries(form_.List5, [&](const std::string& entry) { return entry == s; });
    putOnTop(form_.List1, s, form_.List7);
}

void ListMoves::selectMp3(const std::string& s, MovedBy movedBy) {
    const auto matching = [&](const std::string& entry) {
        return matches(entry, s);
    };
    removeEntries(form_.List2, matching);
    removeEntries(form_.List4, matching);
    if (movedBy == MovedBy::drag) {
        putOnTop(form_.List4, s, form_.List7);
        return;
    }
    form_.List7.clear();
    form_.List7.addItem(s);
    for (int i = 0; i < form_.List4.listCount(); ++i) {
        form_.List7.addItem(form_.List4.list(i));
    }
    // A double click clears the list of available files (List2), but not the list of selected files
    // (List4), to which the following loop adds List7. So the old entries of List4 occur twice,
    // before and after the new entry, and are decoded twice.
    form_.List2.clear();
    for (int i = 0; i < form_.List7.listCount(); ++i) {
        if (!form_.List7.list(i).empty()) {
            form_.List4.addItem(form_.List7.list(i));
        }
    }
}

void ListMoves::returnMp3(const std::string& s) {
    const auto matching = [&](const std::string& entry) {
        return matches(entry, s);
    };
    removeEntries(form_.List2, matching);
    removeEntries(form_.List4, matching);
    putOnTop(form_.List2, s, form_.List7);
}

/// Deliberate, since users rely on it: the index advances after a removal, too, so the entry that
/// moves into the place of a removed entry is skipped. The bound is read before the loop; beyond
/// the new end of the list, list() returns an empty text, which is never removed.
void ListMoves::removeEntries(ListBox& list, const Test& leaves) {
    const int bound = list.listCount();
    for (int i = 0; i < bound; ++i) {
        if (leaves(list.list(i))) {
            list.removeItem(i).passOver();
            loop_.yield();
        }
    }
}

} // namespace sonarith
