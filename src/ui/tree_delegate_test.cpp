// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree_delegate.h"

#include "ui/tree_fixture.h"

namespace sonarith {
namespace {

using TreeDelegateTest = TreeFixture;

TEST_F(TreeDelegateTest, RowsAreOfOneHeightWithAirAroundTextAndPicture) {
    const int height = widget().visualRect(indexOf(first)).height();
    EXPECT_GT(height, widget().fontMetrics().height());
    EXPECT_GT(height, widget().iconSize().height());
    EXPECT_EQ(widget().visualRect(indexOf(collection)).height(), height);
}

TEST_F(TreeDelegateTest, ANodeThatIsSelectedAndHighlightedLooksSelected) {
    const auto row = [&] {
        return widget().viewport()->grab(widget().visualRect(indexOf(first))).toImage();
    };
    tree.setSelectedItem(first).passOver();
    const QImage selected = row();
    tree.setDropHighlight(first).passOver();
    EXPECT_EQ(row(), selected);
}

} // namespace
} // namespace sonarith
