// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree_view_adapter.h"

#include <QScrollBar>

#include "ui/tree_fixture.h"

namespace sonarith {
namespace {

using TreeViewAdapterTest = TreeFixture;

TEST_F(TreeViewAdapterTest, TheWidgetHasThePositionAndSizeOfTheControl) {
    tree.setLeft(285_twips);
    tree.setTop(900_twips);
    EXPECT_EQ(widget().geometry(), QRect(19, 60, 300, 300));
    EXPECT_EQ(widget().objectName(), "TreeView1");
    EXPECT_EQ(widget().accessibleName(), "Work tree");
}

TEST_F(TreeViewAdapterTest, TheWidgetShowsTheSelectionOfTheTree) {
    tree.setSelectedItem(second).passOver();
    EXPECT_EQ(widget().selectionModel()->selectedIndexes(), QModelIndexList{indexOf(second)});
    EXPECT_EQ(widget().currentIndex(), indexOf(second));
    tree.remove(second).passOver();
    EXPECT_FALSE(widget().selectionModel()->hasSelection());
}

TEST_F(TreeViewAdapterTest, RevealingANodeExpandsItsAncestorsAndScrollsToIt) {
    NodeRef last;
    for (int i = 0; i < 200; ++i) {
        last = add(mp3, "song " + std::to_string(i) + ".mp3");
    }
    EXPECT_FALSE(widget().isExpanded(indexOf(mp3)));
    tree.ensureVisible(last).passOver();
    QCoreApplication::processEvents();
    EXPECT_TRUE(widget().isExpanded(indexOf(mp3)));
    EXPECT_TRUE(widget().viewport()->rect().intersects(widget().visualRect(indexOf(last))));
}

TEST_F(TreeViewAdapterTest, TheSelectedNodeStaysVisibleWhenItMovesIntoACollapsedGroup) {
    tree.setSelectedItem(first).passOver();
    tree.setParent(first, mp3).passOver();
    QCoreApplication::processEvents();
    EXPECT_TRUE(widget().isExpanded(indexOf(mp3)));
    EXPECT_EQ(widget().selectionModel()->selectedIndexes(), QModelIndexList{indexOf(first)});
}

TEST_F(TreeViewAdapterTest, TheDropHighlightIsPaintedOnlyOnItsNode) {
    const auto rowOf = [&](const NodeRef& node) {
        return widget().viewport()->grab(widget().visualRect(indexOf(node))).toImage();
    };
    const QImage plain = rowOf(mp3);
    const QImage other = rowOf(wav);
    tree.setDropHighlight(mp3).passOver();
    EXPECT_NE(rowOf(mp3), plain);
    EXPECT_EQ(rowOf(wav), other);
    tree.setDropHighlight(nullptr).passOver();
    EXPECT_EQ(rowOf(mp3), plain);
}

TEST_F(TreeViewAdapterTest, TheLastOfAHundredThousandRevealedNodesIsVisible) {
    for (int i = 0; i < 100000; ++i) {
        tree.ensureVisible(add(mp3, std::to_string(i))).passOver();
    }
    QCoreApplication::processEvents();
    const NodeRef last = mp3->children().back();
    EXPECT_TRUE(widget().viewport()->rect().intersects(widget().visualRect(indexOf(last))));
    EXPECT_GT(widget().verticalScrollBar()->maximum(), 0);
}

TEST_F(TreeViewAdapterTest, TheTreeCanChangeAfterTheAdapterIsDestroyed) {
    adapter.reset();
    EXPECT_TRUE(tree.setSelectedItem(add(mp3, "later.mp3")).ok());
}

} // namespace
} // namespace sonarith
