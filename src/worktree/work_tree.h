// SPDX-License-Identifier: GPL-3.0-or-later
// Builds the work tree from its lists, and fills the file lists from the destination folder. The
// lists contain the data; the tree only shows it, and is not updated at every change of a list.
#pragma once

#include <string>

#include "forms/form1.h"
#include "platform/controls/tree_view.h"
#include "settings/process_state.h"
#include "worktree/add_file.h"
#include "worktree/folder_scanner.h"

namespace sonarith {

class WorkTree {
  public:
    /// All parameters must outlive this object.
    WorkTree(ProcessState& process, Form1& form, FolderScanner& finder, FileAdder& adder)
        : process_(process), form_(form), finder_(finder), adder_(adder) {}

    /// Shows the window, scans the destination folder into the file lists and builds the tree. A
    /// later build first removes the nodes with the indices 2 and 1 and their subtrees: usually the
    /// whole topmost collection (a root with its groups). All other nodes stay, even those of files
    /// that no longer exist. Then the build adds only the nodes whose keys the tree lacks. Yields
    /// while the finder searches.
    void showfiles();

    /// Runs after the finder's "Select for Conversion" and "Delete File": does nothing if List1
    /// (WAV files) or List2 (MP3 files) contains the selected line of the finder's results.
    /// Otherwise adds a WAV file to List2, or an MP3 file to List1 (both deliberate). Then calls
    /// FileAdder::Cmaddfile2 with the index of the selected line instead of the path in it. So
    /// Cmaddfile2 only waits 0.3 s and adds nothing.
    void showfiles3();

    /// Builds the tree in a layout in which all groups are siblings below one root. Nothing in the
    /// program calls this function.
    void ShowFilesOneRoot();

  private:
    enum class Reveal { nothing, eachAdded };

    void scanDestination();
    void scan(const std::string& extension, ListBox& list);
    void addTracks(const ListBox& list, const NodeRef& group);
    NodeRef addFilesFromTheLast(const ListBox& list, const std::string& ending,
                                const NodeRef& group, Reveal reveal);
    void addBaseNames(const ListBox& list, const std::string& ending, const NodeRef& group);

    ProcessState& process_;
    Form1& form_;
    FolderScanner& finder_;
    FileAdder& adder_;
    /// The last collection and the last group that showfiles() has added in any of its builds.
    NodeRef collection_;
    NodeRef group_;
};

} // namespace sonarith
