// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/work_tree.h"

#include "settings/path_helpers.h"
#include "worktree/tree_nodes.h"

namespace sonarith {

namespace {

/// The name of the file, without its folder, as the text of a node. `ending` (".wav" or ".mp3")
/// replaces the last four characters of the name.
Result<std::string> baseWithEnding(const std::string& path, const std::string& ending) {
    Result<std::string> base = FileBaseName(path);
    return base.ok() ? Result<std::string>(base.value() + ending) : base;
}

} // namespace

void WorkTree::showfiles() {
    TreeView& tree = form_.TreeView1;
    form_.show();
    // Removes the nodes at the indices 2 and 1: usually the first group of the topmost collection,
    // then this collection. The other collections that an earlier call has added remain.
    tree.remove(2).passOver();
    tree.remove(1).passOver();
    scanDestination();
    form_.show();

    // Adding a node fails if the tree contains the node's key; `collection_` or `group_` then keeps
    // its value. So a later call adds new files under the group that was added last, even if this
    // is a group for tracks or for another kind of file.
    addCollection(tree, "f Collection 1", "CD Tracks").storeIn(collection_);
    addGroup(tree, collection_, "g Selected Tracks", selectedTracksText).storeIn(group_);
    tree.ensureVisible(group_).passOver();
    addGroup(tree, collection_, "g Available Tracks", availableTracksText).storeIn(group_);
    addTracks(form_.lstTracks, group_);
    tree.ensureVisible(group_).passOver();

    addCollection(tree, "f Collection 2", "WAV Files Folder").storeIn(collection_);
    tree.ensureVisible(group_).passOver();
    addGroup(tree, collection_, "g WAV Files", wavFilesText).storeIn(group_);
    const NodeRef lastWav = addFilesFromTheLast(form_.List1, ".wav", group_, Reveal::nothing);
    tree.ensureVisible(lastWav).passOver();

    addCollection(tree, "f Collection 3", "MP3 Files Folder").storeIn(collection_);
    addGroup(tree, collection_, "g Selected MP3 Files", selectedMp3FilesText).storeIn(group_);
    // The key contains "Available", the text does not.
    addGroup(tree, collection_, "g Available MP3 Files", mp3FilesText).storeIn(group_);
    reverse(form_.List1, form_.List7);
    const bool fullPath = process_.settings.showFullPath != 0;
    const NodeRef lastMp3 = addFilesFromTheLast(form_.List2, ".mp3", group_,
                                                fullPath ? Reveal::nothing : Reveal::eachAdded);
    // This group is found by its text, because in a later call `group_` may be another group.
    tree.ensureVisible(firstNodeOfText(tree, mp3FilesText)).passOver();
    tree.ensureVisible(lastMp3).passOver();
    reverse(form_.List2, form_.List7);
}

void WorkTree::scanDestination() {
    for (ListBox* list : {&form_.List1, &form_.List2, &form_.List4, &form_.List5}) {
        list->clear();
    }
    // A missing folder is ignored: the search then runs in the finder's previous folder.
    finder_.setFolder(process_.settings.decodePath).passOver();
    scan("wav", form_.List1);
    scan("mp3", form_.List2);
}

void WorkTree::scan(const std::string& extension, ListBox& list) {
    finder_.search(extension);
    const ListBox& found = finder_.lstfiles();
    for (int i = 0; i < found.listCount(); ++i) {
        list.addItem(found.list(i));
    }
}

void WorkTree::addTracks(const ListBox& list, const NodeRef& group) {
    for (int i = 0; i < list.listCount(); ++i) {
        const std::string line = list.list(i);
        addItem(form_.TreeView1, group, "p " + line, line).passOver();
    }
}

NodeRef WorkTree::addFilesFromTheLast(const ListBox& list, const std::string& ending,
                                      const NodeRef& group, Reveal reveal) {
    TreeView& tree = form_.TreeView1;
    NodeRef last;
    for (int i = list.listCount() - 1; i >= 0; --i) {
        const std::string path = list.list(i);
        const Result<std::string> text = process_.settings.showFullPath != 0
                                             ? Result<std::string>(path)
                                             : baseWithEnding(path, ending);
        if (!text.ok()) {
            continue;
        }
        const auto added = addItem(tree, group, "p " + text.value(), text.value());
        if (added.ok() && reveal == Reveal::eachAdded) {
            tree.ensureVisible(added.value()).passOver();
        }
        added.storeIn(last);
    }
    return last;
}

void WorkTree::showfiles3() {
    const ListBox& found = finder_.lstfiles();
    const std::string chosen = found.text();
    for (const ListBox* list : {&form_.List1, &form_.List2}) {
        for (int i = 0; i < list->listCount(); ++i) {
            if (list->list(i) == chosen) {
                return;
            }
        }
    }
    // Deliberate: a WAV file is added to the list of MP3 files, and an MP3 file to the list of WAV
    // files.
    if (chosen.ends_with(".wav")) {
        form_.List2.addItem(chosen);
    }
    if (chosen.ends_with(".mp3")) {
        form_.List1.addItem(chosen);
    }
    // Deliberate: the argument is the index of the selected line of the results, which is not the
    // path of a file. So the call waits for 0.3 s and adds no file.
    adder_.Cmaddfile2(std::to_string(found.listIndex()));
}

void WorkTree::ShowFilesOneRoot() {
    TreeView& tree = form_.TreeView1;
    tree.clear();
    NodeRef root;
    NodeRef group;
    addCollection(tree, "f Collection 1", "CD Tracks, WAV, MP3 files").storeIn(root);
    addGroup(tree, root, "g Selected Tracks", selectedTracksText).storeIn(group);
    addTracks(form_.lstRecord, group);
    addGroup(tree, root, "g Available Tracks", availableTracksText).storeIn(group);
    addTracks(form_.lstTracks, group);
    addGroup(tree, root, "g Selected WAV Files", selectedWavFilesText).storeIn(group);
    addGroup(tree, root, "g WAV Files", wavFilesText).storeIn(group);
    addBaseNames(form_.List1, ".wav", group);
    addGroup(tree, root, "g Selected MP3 Files", selectedMp3FilesText).storeIn(group);
    addGroup(tree, root, "g Available MP3 Files", mp3FilesText).storeIn(group);
    addBaseNames(form_.List2, ".mp3", group);
}

void WorkTree::addBaseNames(const ListBox& list, const std::string& ending, const NodeRef& group) {
    for (int i = 0; i < list.listCount(); ++i) {
        if (const auto text = baseWithEnding(list.list(i), ending); text.ok()) {
            addItem(form_.TreeView1, group, "p " + text.value(), text.value()).passOver();
        }
    }
}

} // namespace sonarith
