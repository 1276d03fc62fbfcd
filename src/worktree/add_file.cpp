// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/add_file.h"

#include <chrono>

#include "platform/text/unicode.h"
#include "settings/least_file_length.h"
#include "settings/path_helpers.h"
#include "worktree/tree_nodes.h"

namespace sonarith {

using namespace std::chrono_literals;

namespace {

/// How long Cmaddfile2() waits, so that a file that is still being written can become complete.
constexpr EventLoop::Duration settlingTime = 300ms;

} // namespace

bool FileAdder::worthShowing(const std::string& path) const {
    return platform_.files.fileLength(path).valueOr(0) >= leastFileLength;
}

void FileAdder::Cmaddfile2(std::string path) {
    platform_.loop.waitFor(settlingTime);
    path = lowerCase(path);
    if (!worthShowing(path)) {
        return;
    }
    TreeView& tree = form_.TreeView1;
    const std::string name = SplitPath(path, process_);
    // The file is a duplicate if its path or name is the text of any node in the tree.
    for (int i = 1; i <= tree.count(); ++i) {
        const std::string& text = tree.node(i)->text();
        if (text == path || text == name) {
            return;
        }
    }
    const bool isWav = path.ends_with(".wav");
    const bool isMp3 = path.ends_with(".mp3");
    NodeRef group;
    if (isWav) {
        group = firstNodeOfText(tree, wavFilesText);
    } else if (isMp3) {
        group = firstNodeOfText(tree, mp3FilesText);
    }
    platform_.loop.yield();

    const std::string text = process_.settings.showFullPath != 0 ? path : name;
    // A file of another type has no group and therefore gets no node.
    if (const auto added = addItem(tree, group, "p name" + text, text); added.ok()) {
        tree.ensureVisible(added.value()).passOver();
    }
    platform_.loop.yield();

    if (!isWav && !isMp3) {
        return;
    }
    // The entry is added at the top of the list, although the node is the last of its group.
    // Nothing relies on entries and nodes having the same order.
    ListBox& list = isWav ? form_.List1 : form_.List2;
    for (int i = 0; i < list.listCount(); ++i) {
        if (list.list(i) == path) {
            return;
        }
    }
    putOnTop(list, path, form_.List7);
}

} // namespace sonarith
