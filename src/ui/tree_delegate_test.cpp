// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree_delegate.h"

#include "ui/tree_fixture.h"

namespace sonarith {
namespace {

using TreeDelegateTest = TreeFixture;

TEST_F(TreeDelegateTest, AllRowsHaveTheSameHeightWithPaddingAroundTextAndPicture) {
    const int height = widget().visualRect(indexOf(first)).height();
    EXPECT_GT(height, widget().fontMetrics().height());
    EXPECT_GT(height, widget().iconSize().height());
    EXPECT_EQ(widget().visualRect(indexOf(collection)).height(), height);
}

TEST_F(TreeDelegateTest, ASelectedNodeLooksTheSameWithAndWithoutTheDropHighlight) {
    const auto row = [&] {
        return widget().viewport()->grab(widget().visualRect(indexOf(first))).toImage();
    };
    tree.setSelectedItem(first).passOver();
    const QImage selected = row();
    tree.setDropHighlight(first).passOver();
    EXPECT_EQ(row(), selected);
}

TEST_F(TreeDelegateTest, OnlyTheRowOfTheNodeThatIsDraggedByKeysLooksDifferent) {
    const auto row = [&](const NodeRef& node) {
        return widget().viewport()->grab(widget().visualRect(indexOf(node))).toImage();
    };
    const QImage before = row(first);
    const QImage other = row(second);
    auto& delegate = static_cast<TreeDelegate&>(*widget().itemDelegate());
    delegate.setCarried(first);
    EXPECT_NE(row(first), before);
    EXPECT_EQ(row(second), other);
    delegate.setCarried(nullptr);
    EXPECT_EQ(row(first), before);
}

} // namespace
} // namespace sonarith
