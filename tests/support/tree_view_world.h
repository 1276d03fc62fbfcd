// SPDX-License-Identifier: GPL-3.0-or-later
// Creates a small tree for the tests of the tree control, and an observer that logs the tree's
// notifications.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platform/controls/form.h"
#include "platform/controls/tree_view.h"

namespace sonarith::test {

/// Logs the notifications of a tree.
struct LoggingObserver : TreeObserver {
    std::vector<std::string> log;
    static std::string name(const NodeRef& node) { return node ? node->text() : "none"; }
    void beforeInsert(const NodeRef& parent, int position) override {
        log.push_back("before insert " + name(parent) + " " + std::to_string(position));
    }
    void afterInsert(const NodeRef& node) override { log.push_back("inserted " + name(node)); }
    void beforeRemove(const NodeRef& node) override {
        log.push_back("before remove " + name(node) + " of " + name(node->parent()));
    }
    void afterRemove() override { log.push_back("removed"); }
    void beforeMove(const NodeRef& node, const NodeRef& parent, int position) override {
        log.push_back("before move " + name(node) + " of " + name(node->parent()) + " to " +
                      name(parent) + " " + std::to_string(position));
    }
    void afterMove(const NodeRef& node) override {
        log.push_back("moved " + name(node) + " to " + name(node->parent()));
    }
    void textChanged(const NodeRef& node) override { log.push_back("text " + name(node)); }
    void selectionChanged() override { log.push_back("selection"); }
    void dropHighlightChanged() override { log.push_back("highlight"); }
    void revealRequested(const NodeRef& node) override { log.push_back("reveal " + name(node)); }
    void editRequested(const NodeRef& node) override { log.push_back("edit " + name(node)); }
    void editAbandoned() override { log.push_back("edit abandoned"); }
    void dragRequested() override { log.push_back("drag"); }
};

/// The tree has the roots `A` and `B`. Node `A` contains `a` and `b`; node `a` contains `a1` and
/// `a2`.
struct TreeViewTest : testing::Test {
    Form form{"Form1"};
    TreeView tree{form, "TreeView1"};
    NodeRef A = make(nullptr, "A");
    NodeRef a = make(A, "a");
    NodeRef a1 = make(a, "a1");
    NodeRef b = make(A, "b");
    NodeRef B = make(nullptr, "B");
    NodeRef a2 = make(a, "a2");
    LoggingObserver observer;

    NodeRef make(const NodeRef& parent, const std::string& text) {
        return tree.add(parent, "key " + text, text, 3, 6).value();
    }
    static ErrorNumber numberOf(const Status& status) {
        EXPECT_FALSE(status.ok());
        return status.ok() ? ErrorNumber{} : status.error().number;
    }
};

struct ObservedTree : TreeViewTest {
    ObservedTree() { tree.setObserver(&observer); }
};

} // namespace sonarith::test
