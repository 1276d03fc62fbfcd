// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the main window's form with its work tree, connected as in the program; time is virtual.
// Tests call the handlers of the tree as mouse presses, releases and double clicks would. Base
// class of the work tree's tests.
//
//     finder.files[destination]["mp3"] = {"c:\\music\\a.mp3"};
//     disc({"Track  1 - 00:03:05"});
//     tree.showfiles();
//     doubleClick("Track  1 - 00:03:05");
//     EXPECT_THAT(outline(), ElementsAre("CD Tracks", "  Selected Tracks", ...));
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "forms/windows.h"
#include "support/fake_folder_scanner.h"
#include "support/fake_machine.h"
#include "worktree/tree_nodes.h"
#include "worktree/work_tree_jobs.h"

namespace sonarith::test {

/// Logs the texts of the nodes that the logic asks the view to scroll to.
struct RevealLog : TreeObserver {
    std::vector<std::string> texts;
    void beforeInsert(const NodeRef&, int) override {}
    void afterInsert(const NodeRef&) override {}
    void beforeRemove(const NodeRef&) override {}
    void afterRemove() override {}
    void beforeMove(const NodeRef&, const NodeRef&, int) override {}
    void afterMove(const NodeRef&) override {}
    void textChanged(const NodeRef&) override {}
    void selectionChanged() override {}
    void dropHighlightChanged() override {}
    void revealRequested(const NodeRef& shown) override { texts.push_back(shown->text()); }
    void editRequested(const NodeRef&) override {}
    void dragRequested() override {}
};

struct WorkTreeWorld : testing::Test, FakeMachine {
    inline static const std::string destination = "c:\\music";
    inline static const std::vector<std::string> twoTracks = {"Track  1 - 00:03:05",
                                                              "Track  2 - 00:04:00"};

    FakeFileSystem& disk = files;
    ProcessState process;
    Windows windows{platform, process};
    Form1& form = windows.Form1;
    FakeFolderScanner finder;
    WorkTreeJobs jobs{platform, process, windows, finder};
    DragState& drag = jobs.drag;
    FileAdder& adder = jobs.adder;
    WorkTree& tree = jobs.tree;
    TreeMoves& moves = jobs.moves;
    LabelEdit& labels = jobs.labels;
    PopupMenu& popup = jobs.popup;
    TreeView& view = form.TreeView1;

    WorkTreeWorld() {
        form.load();
        process.settings.decodePath = destination;
        process.settings.showFullPath = 1;
        finder.files[destination] = {};
    }

    // --- set by the test -------------------------------------------------------------------

    /// Fills the list of tracks and empties the queue of tracks to extract, as after a disc was
    /// read.
    void disc(const std::vector<std::string>& lines) {
        form.lstRecord.clear();
        fill(form.lstTracks, lines);
    }
    static void fill(ListBox& list, const std::vector<std::string>& lines) {
        list.clear();
        for (const std::string& line : lines) {
            list.addItem(line);
        }
    }

    // --- simulated actions of the user -----------------------------------------------------

    void press(const NodeRef& at, MouseButtons buttons = {.left = true}) {
        run(view.onMouseDown, buttons, at);
    }
    void release(const NodeRef& at, MouseButtons buttons = {.left = true}) {
        run(view.onMouseUp, buttons, at);
    }
    void click(const std::string& text) {
        press(node(text));
        release(node(text));
    }
    /// Simulates a double click: the handlers of its first press and release run before the handler
    /// of the double click.
    void doubleClick(const NodeRef& at) {
        press(at);
        release(at);
        run(view.onDoubleClick);
    }
    void doubleClick(const std::string& text) { doubleClick(node(text)); }

    /// Simulates a press on a node and the first movement of the pointer.
    void beginDrag(const NodeRef& at) {
        press(at);
        run(view.onMouseMove, MouseButtons{.left = true}, at);
    }
    void beginDrag(const std::string& text) { beginDrag(node(text)); }
    void dragOver(const NodeRef& target) { run(view.onDragOver, target); }
    void dragOver(const std::string& text) { dragOver(node(text)); }
    void drop() { run(view.onDragDrop, NodeRef()); }

    // --- read by the test ------------------------------------------------------------------

    [[nodiscard]] NodeRef node(const std::string& text) const {
        return firstNodeOfText(view, text);
    }
    [[nodiscard]] static std::vector<std::string> lines(const ListBox& list) {
        std::vector<std::string> all;
        for (int i = 0; i < list.listCount(); ++i) {
            all.push_back(list.list(i));
        }
        return all;
    }
    [[nodiscard]] std::vector<std::string> childrenOf(const std::string& text) const {
        std::vector<std::string> all;
        if (const NodeRef parent = node(text)) {
            for (const NodeRef& child : parent->children()) {
                all.push_back(child->text());
            }
        }
        return all;
    }
    /// The texts of all nodes from top to bottom, indented by two blanks for each level.
    [[nodiscard]] std::vector<std::string> outline() const {
        std::vector<std::string> all;
        for (const NodeRef& root : view.roots()) {
            describe(root, "", all);
        }
        return all;
    }
    /// The texts of all nodes in the order of their index numbers.
    [[nodiscard]] std::vector<std::string> numbering() const {
        std::vector<std::string> all;
        for (int i = 1; i <= view.count(); ++i) {
            all.push_back(view.node(i)->text());
        }
        return all;
    }

  private:
    static void describe(const NodeRef& node, const std::string& indent,
                         std::vector<std::string>& all) {
        all.push_back(indent + node->text());
        for (const NodeRef& child : node->children()) {
            describe(child, indent + "  ", all);
        }
    }
};

} // namespace sonarith::test
