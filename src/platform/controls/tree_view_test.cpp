// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/tree_view.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/tree_view_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> textsOf(const std::vector<NodeRef>& nodes) {
    std::vector<std::string> texts;
    for (const NodeRef& node : nodes) {
        texts.push_back(node->text());
    }
    return texts;
}

/// The texts of all nodes in the order of their indices.
std::vector<std::string> numbering(const TreeView& tree) {
    std::vector<std::string> texts;
    for (int i = 1; i <= tree.count(); ++i) {
        texts.push_back(tree.node(i)->text());
    }
    return texts;
}

/// Checks that every node's index, position and parent agree with its place in the tree.
void expectConsistent(const TreeView& tree) {
    for (int i = 1; i <= tree.count(); ++i) {
        const NodeRef node = tree.node(i);
        EXPECT_EQ(node->index(), i);
        const auto& siblings = node->parent() ? node->parent()->children() : tree.roots();
        const auto position = static_cast<std::size_t>(node->position());
        ASSERT_LT(position, siblings.size()) << node->text();
        EXPECT_EQ(siblings[position], node) << node->text();
    }
}

using test::ObservedTree;
using test::TreeViewTest;

TEST_F(TreeViewTest, NumbersItsNodesInTheOrderOfCreation) {
    EXPECT_THAT(numbering(tree), ElementsAre("A", "a", "a1", "b", "B", "a2"));
    expectConsistent(tree);
    EXPECT_EQ(tree.node(0), nullptr);
    EXPECT_EQ(tree.node(-1), nullptr);
    EXPECT_EQ(tree.node(7), nullptr);
}

TEST_F(TreeViewTest, AnAddedNodeIsTheLastChildAndHasTheGivenProperties) {
    EXPECT_THAT(textsOf(tree.roots()), ElementsAre("A", "B"));
    EXPECT_THAT(textsOf(a->children()), ElementsAre("a1", "a2"));
    EXPECT_EQ(a2->key(), "key a2");
    EXPECT_EQ(a2->image(), 3);
    EXPECT_EQ(a2->selectedImage(), 6);
    EXPECT_EQ(a2->parent(), a);
    EXPECT_EQ(B->parent(), nullptr);
}

TEST_F(TreeViewTest, AddingAnExistingKeyFailsAndChangesNothing) {
    tree.setObserver(&observer);
    const auto added = tree.add(B, "key a1", "twin", 1, 1);
    ASSERT_FALSE(added.ok());
    EXPECT_EQ(added.error().number, ErrorNumber::keyNotUnique);
    EXPECT_EQ(tree.count(), 6);
    EXPECT_THAT(B->children(), IsEmpty());
    EXPECT_THAT(observer.log, IsEmpty());
}

TEST_F(TreeViewTest, KeysThatDifferOnlyInCaseOrInATrailingNulAreDifferent) {
    EXPECT_TRUE(tree.add(A, "KEY A1", "x", 1, 1).ok());
    EXPECT_TRUE(tree.add(A, std::string("key a1\0", 7), "x", 1, 1).ok());
}

TEST_F(TreeViewTest, AKeyIsFreeAgainAfterItsNodeIsRemoved) {
    tree.remove(a).passOver();
    EXPECT_TRUE(tree.add(B, "key a", "x", 1, 1).ok());
    EXPECT_TRUE(tree.add(B, "key a1", "x", 1, 1).ok());
    EXPECT_FALSE(tree.add(B, "key b", "x", 1, 1).ok());
}

TEST_F(TreeViewTest, ANodeCannotBeAddedBelowARemovedNode) {
    tree.remove(A).passOver();
    const auto added = tree.add(a, "new", "new", 1, 1);
    ASSERT_FALSE(added.ok());
    EXPECT_EQ(added.error().number, ErrorNumber::elementRemoved);
    EXPECT_EQ(tree.count(), 1);
}

TEST_F(TreeViewTest, ARemovalDecrementsEveryHigherIndex) {
    EXPECT_TRUE(tree.remove(4).ok());
    EXPECT_THAT(numbering(tree), ElementsAre("A", "a", "a1", "B", "a2"));
    EXPECT_TRUE(tree.remove(1).ok());
    EXPECT_THAT(numbering(tree), ElementsAre("B"));
    expectConsistent(tree);
}

TEST_F(TreeViewTest, ARemovalIncludesTheWholeSubtreeEvenIfItsIndicesAreNotConsecutive) {
    tree.remove(a).passOver();
    EXPECT_THAT(numbering(tree), ElementsAre("A", "b", "B"));
    expectConsistent(tree);
    for (const NodeRef& gone : {a, a1, a2}) {
        EXPECT_TRUE(gone->removed());
        EXPECT_EQ(gone->index(), 0);
    }
    EXPECT_FALSE(b->removed());
}

TEST_F(TreeViewTest, ARemovalIncludesChildrenWithLowerIndicesThanTheirParent) {
    tree.setParent(a, B).passOver();
    tree.remove(B).passOver();
    EXPECT_THAT(numbering(tree), ElementsAre("A", "b"));
    expectConsistent(tree);
    EXPECT_TRUE(a1->removed());
}

TEST_F(TreeViewTest, RemovingAnIndexOutOfRangeFails) {
    for (const int index : {-1, 0, 7}) {
        EXPECT_EQ(numberOf(tree.remove(index)), ErrorNumber::elementNotFound);
    }
    EXPECT_EQ(tree.count(), 6);
}

TEST_F(TreeViewTest, ARemovedNodeCanOnlyBeRead) {
    tree.remove(a).passOver();
    for (const NodeRef& gone : {a, a1}) {
        EXPECT_FALSE(gone->text().empty());
        EXPECT_FALSE(gone->key().empty());
        EXPECT_EQ(gone->parent(), nullptr);
        EXPECT_THAT(gone->children(), IsEmpty());
        EXPECT_EQ(tree.nextSibling(gone), nullptr);
        EXPECT_EQ(tree.previousSibling(gone), nullptr);
        EXPECT_EQ(numberOf(tree.remove(gone)), ErrorNumber::elementRemoved);
        EXPECT_EQ(numberOf(tree.setText(gone, "x")), ErrorNumber::elementRemoved);
        EXPECT_EQ(numberOf(tree.setParent(gone, B)), ErrorNumber::elementRemoved);
        EXPECT_EQ(numberOf(tree.setParent(b, gone)), ErrorNumber::elementRemoved);
        EXPECT_EQ(numberOf(tree.setSelectedItem(gone)), ErrorNumber::elementRemoved);
        EXPECT_EQ(numberOf(tree.setDropHighlight(gone)), ErrorNumber::elementRemoved);
        EXPECT_EQ(numberOf(tree.ensureVisible(gone)), ErrorNumber::elementRemoved);
    }
    EXPECT_EQ(a1->text(), "a1");
    EXPECT_EQ(b->parent(), A);
}

TEST_F(TreeViewTest, OperationsThatNeedANodeFailForAnEmptyNode) {
    EXPECT_EQ(numberOf(tree.remove(NodeRef())), ErrorNumber::objectNotSet);
    EXPECT_EQ(numberOf(tree.setText(nullptr, "x")), ErrorNumber::objectNotSet);
    EXPECT_EQ(numberOf(tree.setParent(nullptr, A)), ErrorNumber::objectNotSet);
    EXPECT_EQ(numberOf(tree.setParent(a, nullptr)), ErrorNumber::objectNotSet);
    EXPECT_EQ(numberOf(tree.setSelectedItem(nullptr)), ErrorNumber::objectNotSet);
    EXPECT_EQ(numberOf(tree.ensureVisible(nullptr)), ErrorNumber::objectNotSet);
    EXPECT_EQ(tree.nextSibling(nullptr), nullptr);
    EXPECT_EQ(tree.previousSibling(nullptr), nullptr);
}

TEST_F(TreeViewTest, RemovingTheSelectedItemClearsTheSelection) {
    tree.setSelectedItem(a).passOver();
    EXPECT_TRUE(tree.remove(tree.selectedItem()).ok());
    EXPECT_EQ(tree.selectedItem(), nullptr);
}

TEST_F(TreeViewTest, ClearRemovesAllNodesAndTheSelection) {
    tree.setSelectedItem(a1).passOver();
    tree.clear();
    EXPECT_EQ(tree.count(), 0);
    EXPECT_THAT(tree.roots(), IsEmpty());
    EXPECT_EQ(tree.selectedItem(), nullptr);
    EXPECT_TRUE(tree.add(nullptr, "key a", "a", 1, 1).ok());
}

TEST_F(TreeViewTest, AChangeOfParentMovesTheSubtreeAndKeepsTheIndices) {
    EXPECT_TRUE(tree.setParent(a, B).ok());
    EXPECT_THAT(textsOf(A->children()), ElementsAre("b"));
    EXPECT_THAT(textsOf(B->children()), ElementsAre("a"));
    EXPECT_THAT(textsOf(a->children()), ElementsAre("a1", "a2"));
    EXPECT_THAT(numbering(tree), ElementsAre("A", "a", "a1", "b", "B", "a2"));
    expectConsistent(tree);
}

TEST_F(TreeViewTest, AMovedNodeBecomesTheLastChild) {
    EXPECT_TRUE(tree.setParent(a1, A).ok());
    EXPECT_THAT(textsOf(A->children()), ElementsAre("a", "b", "a1"));
    expectConsistent(tree);
}

TEST_F(TreeViewTest, ARootCanBecomeTheChildOfAnotherNode) {
    EXPECT_TRUE(tree.setParent(B, a).ok());
    EXPECT_THAT(textsOf(tree.roots()), ElementsAre("A"));
    EXPECT_EQ(B->parent(), a);
    expectConsistent(tree);
}

TEST_F(TreeViewTest, SettingTheSameParentChangesNothing) {
    tree.setObserver(&observer);
    EXPECT_TRUE(tree.setParent(a, A).ok());
    EXPECT_THAT(textsOf(A->children()), ElementsAre("a", "b"));
    EXPECT_THAT(observer.log, IsEmpty());
}

TEST_F(TreeViewTest, ANodeCannotBecomeItsOwnDescendant) {
    for (const NodeRef& below : {A, a, a1}) {
        EXPECT_EQ(numberOf(tree.setParent(A, below)), ErrorNumber::invalidPropertyValue);
    }
    EXPECT_EQ(A->parent(), nullptr);
    expectConsistent(tree);
}

TEST_F(TreeViewTest, SiblingsAreOrderedByPositionNotByIndex) {
    tree.setParent(a1, A).passOver();
    EXPECT_EQ(tree.nextSibling(b), a1);
    EXPECT_EQ(tree.previousSibling(a1), b);
    EXPECT_EQ(tree.previousSibling(a), nullptr);
    EXPECT_EQ(tree.nextSibling(a1), nullptr);
    EXPECT_EQ(tree.nextSibling(A), B);
    EXPECT_EQ(tree.previousSibling(B), A);
    EXPECT_EQ(tree.nextSibling(B), nullptr);
}

TEST_F(TreeViewTest, TheSelectionIsClearedOnlyWhenTheSelectedNodeIsRemoved) {
    tree.setSelectedItem(a1).passOver();
    tree.remove(b).passOver();
    EXPECT_EQ(tree.selectedItem(), a1);
    tree.remove(A).passOver();
    EXPECT_EQ(tree.selectedItem(), nullptr);
}

TEST_F(TreeViewTest, AFailedSelectionLeavesTheOldNodeSelected) {
    tree.setSelectedItem(a1).passOver();
    tree.setSelectedItem(nullptr).passOver();
    EXPECT_EQ(tree.selectedItem(), a1);
}

TEST_F(TreeViewTest, TheDropHighlightIsClearedOnRequestAndWhenItsNodeIsRemoved) {
    EXPECT_EQ(tree.dropHighlight(), nullptr);
    EXPECT_TRUE(tree.setDropHighlight(a).ok());
    EXPECT_EQ(tree.dropHighlight(), a);
    EXPECT_TRUE(tree.setDropHighlight(nullptr).ok());
    EXPECT_EQ(tree.dropHighlight(), nullptr);
    tree.setDropHighlight(a2).passOver();
    tree.remove(a).passOver();
    EXPECT_EQ(tree.dropHighlight(), nullptr);
    tree.setSelectedItem(b).passOver();
    // The handler of a mouse release passes dropHighlight() to setSelectedItem() even if no node
    // is highlighted.
    EXPECT_EQ(numberOf(tree.setSelectedItem(tree.dropHighlight())), ErrorNumber::objectNotSet);
    EXPECT_EQ(tree.selectedItem(), b);
}

TEST_F(ObservedTree, NotifiesBeforeAndAfterAdditionsMovesAndRemovals) {
    make(b, "new");
    tree.setParent(a1, B).passOver();
    tree.remove(A).passOver();
    EXPECT_THAT(observer.log,
                ElementsAre("before insert b 0", "inserted new", "before move a1 of a to B 0",
                            "moved a1 to B", "before remove A of none", "removed"));
}

TEST_F(ObservedTree, NotifiesThatARemovalClearedTheSelectionAndTheHighlight) {
    tree.setSelectedItem(a1).passOver();
    tree.setDropHighlight(a).passOver();
    observer.log.clear();
    tree.remove(a).passOver();
    EXPECT_THAT(observer.log,
                ElementsAre("before remove a of A", "removed", "selection", "highlight"));
}

TEST_F(ObservedTree, NotifiesOfEachChangeOnce) {
    tree.setSelectedItem(a).passOver();
    tree.setSelectedItem(a).passOver();
    tree.setDropHighlight(a).passOver();
    tree.setDropHighlight(a).passOver();
    tree.setText(a, "x").passOver();
    tree.setText(a, "x").passOver();
    tree.ensureVisible(b).passOver();
    tree.beginDrag();
    EXPECT_THAT(observer.log, ElementsAre("selection", "highlight", "text x", "reveal b", "drag"));
}

/// Does not measure the time: with quadratic work on this many nodes, the test would take minutes
/// and exceed the time limit that applies to each test.
TEST(LargeTree, ASubtreeOfAHundredThousandNodesIsBuiltMovedAndRemoved) {
    constexpr int nodes = 100'000;
    Form form("Form1");
    TreeView tree(form, "TreeView1");
    for (int round = 0; round < 2; ++round) {
        const NodeRef root = tree.add(nullptr, "f", "root", 1, 4).value();
        const NodeRef first = tree.add(root, "g 1", "first", 2, 5).value();
        const NodeRef second = tree.add(root, "g 2", "second", 2, 5).value();
        for (int i = 0; i < nodes; ++i) {
            ASSERT_TRUE(tree.add(first, "p " + std::to_string(i), "file", 3, 6).ok());
        }
        EXPECT_TRUE(tree.setParent(first, second).ok());
        EXPECT_EQ(tree.node(nodes + 3)->index(), nodes + 3);
        EXPECT_TRUE(tree.remove(second).ok());
        EXPECT_EQ(tree.count(), 1);
        tree.clear();
        EXPECT_EQ(tree.count(), 0);
    }
}

TEST(DeepTree, RemovesAHundredThousandLevelsAtOnce) {
    Form form("Form1");
    TreeView tree(form, "TreeView1");
    NodeRef deepest;
    for (int i = 0; i < 100'000; ++i) {
        deepest = tree.add(deepest, std::to_string(i), "node", 1, 1).value();
    }
    EXPECT_TRUE(tree.remove(1).ok());
    EXPECT_TRUE(deepest->removed());
    EXPECT_EQ(tree.count(), 0);
}

} // namespace
} // namespace sonarith
